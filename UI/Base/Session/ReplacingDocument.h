#pragma once

#include "UI/Base/Command/CommandContext.h"

#include <string>

namespace Vu {

class CommandDefinition;

/// How a person opens or makes a document by hand: a button, keys, a drop, a tile, an entry of a list. The
/// command that does it closes the shown document without a question, so the user is first asked whether to
/// save its changes, and the command runs only if the user agrees to close the document. Lines, transcripts
/// and tests run the command itself and are asked nothing. Main thread only.
class ReplacingDocument
{
public:
    /// Says that this command closes the shown document.
    static void byCommand(const std::wstring& id);
    [[nodiscard]] static bool isCommand(const CommandDefinition* definition);

    /// Whether the shown document may be closed; asks only if it was changed. Opening the file that is shown
    /// closes nothing.
    [[nodiscard]] static bool agreed(const std::wstring& openedFile = {});
    /// Runs the command after the current event, if the shown document may then be closed. Where the context
    /// has a path, that is the file that is opened.
    static void executeLater(CommandDefinition* definition, CommandContext context);
};

} // namespace Vu
