#include "Server/Base/PythonManager.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/Private/Localized.h"

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

/// Runs a script while the line waits, and fails if the script fails.
class TextCmdScriptRun : public Vs::PythonEntry<TextCmdScriptRun, Vs::TextCommand>
{
public:
    TextCmdScriptRun()
        : PythonEntry(L"Script", L"Run",
                      L"<filename> [<argument>...] Runs a Python script to its end, and fails if it does; "
                      L"tells what the script has put into its global result",
                      "%s", false, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, localized("FileNameNeeded", "The name of a file is missing.")};
        const std::wstring path = Vs::TranscriptMgr::get()->locate(parameters[0]);
        std::vector<std::wstring> arguments;
        for (unsigned i = 1; i < parameters.parameters(); ++i)
            arguments.push_back(parameters[i]);
        // A recording keeps the script as one line.
        const Vs::TranscriptMgr::Unrecorded unrecorded;
        Vs::Status status;
        std::wstring result = Vs::PythonManager::get()->runScriptFile(path, status, arguments);
        return status.isOk() ? TextCommandResult{0, std::move(result)}
                             : TextCommandResult{1, status.toString()};
    }
};

TextCmdScriptRun theRun;

} // namespace
} // namespace Vu
