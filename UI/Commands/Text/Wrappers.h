#pragma once

#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include <string>
#include <utility>

namespace Vu::Commands {

/// One row of a table of wrappers: a text command that runs a definition the way a click does.
struct WrapperRow
{
    using FillContext = void (*)(const Vs::TextCommandParameters&, CommandContext&);

    const wchar_t* area;
    const wchar_t* name;
    const wchar_t* help;
    const char* format;
    Info* (*info)(); ///< Of the definition that is run.
    FillContext fillContext = nullptr;
    bool global = false; ///< Runs in the global command manager.
    bool flush = false;  ///< Runs the deferred tasks afterwards.
    /// Why the line does nothing now, which is its error then; empty if the definition is to be run.
    std::wstring (*refusal)(CommandContext&) = nullptr;
};

// At run time, since instrumented builds know the address of no function earlier.

inline void fill(const WrapperRow& row, const Vs::TextCommandParameters& parameters, CommandContext& context)
{
    if (row.fillContext)
        row.fillContext(parameters, context);
}

/// Why the row's line does nothing now; empty if it does.
inline std::wstring refusal(const WrapperRow& row)
{
    if (!row.refusal)
        return {};
    CommandContext context = CommandContext::activeContext();
    return row.refusal(context);
}

template <const WrapperRow& kRow>
class Wrapper : public Vs::PythonEntry<Wrapper<kRow>, TranscriptedCommandTextCommand>
{
public:
    Wrapper()
        : Vs::PythonEntry<Wrapper<kRow>, TranscriptedCommandTextCommand>(
              kRow.area, kRow.name, kRow.help, kRow.format, false, kRow.info()->key())
    {
    }

    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        if (std::wstring why = refusal(kRow); !why.empty())
            return {1, std::move(why)};
        return this->TranscriptedCommandTextCommand::execute(parameters);
    }

protected:
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override
    {
        if constexpr (kRow.global)
            this->useGlobalCmdMgr(true);
        if constexpr (kRow.flush)
            this->flushDeferredTasks(true);
        fill(kRow, parameters, context);
    }
};

/// Adds the object that a factory makes of `text`; nothing if there is no such factory or it makes none.
void addObject(CommandContext& context, const Vs::UniqueString* key, const char* factory,
               const std::wstring& text);

} // namespace Vu::Commands
