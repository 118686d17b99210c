#pragma once

#include "Server/Base/Status.h"
#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/CommandContext.h"

#include <string_view>

namespace Vu::Commands {

/// One row of a table of direct text commands.
struct DirectTextRow
{
    const wchar_t* area;
    const wchar_t* name;
    const wchar_t* help;
    const char* format = "";
    bool runsInUI = true;
    bool visible = true;
};

/// A text command with a body of its own, constructed from its row.
template <const DirectTextRow& kRow>
class DirectTextCommand : public Vs::PythonEntry<DirectTextCommand<kRow>, Vs::TextCommand>
{
protected:
    DirectTextCommand()
        : Vs::PythonEntry<DirectTextCommand<kRow>, Vs::TextCommand>(kRow.area, kRow.name, kRow.help,
                                                                    kRow.format, kRow.runsInUI, kRow.visible)
    {
    }
};

/// Status 0 with the warnings, or status 1 with the errors.
Vs::TextCommandResult answerOf(const Vs::Status& status);

/// Runs a command definition on behalf of a text line, through the active command manager, or the global one
/// if there is none. A line from the command box goes the normal way, a script line runs at once.
Vs::TextCommandResult runDefinition(std::wstring_view id, CommandContext context,
                                    const Vs::TextCommandParameters& parameters);

} // namespace Vu::Commands
