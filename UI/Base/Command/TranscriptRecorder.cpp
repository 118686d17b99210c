#include "UI/Base/Command/TranscriptRecorder.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptFile.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"

namespace Vu {
namespace {

const Vs::TextCommand* wrapperOf(const std::wstring& definitionKey)
{
    for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands())
        if (command->definitionKey() == definitionKey)
            return command;
    return nullptr;
}

} // namespace

void TranscriptRecorder::after(const CommandRun& run)
{
    Vs::TranscriptMgr* transcripts = Vs::TranscriptMgr::get();
    // What a command calls inside itself is called again when the command is.
    if (!transcripts->recording() || run.depth > 0 || !run.command || !run.definition->scriptable() ||
        run.reason != ETerminationReason::Commit)
        return;
    transcripts->write(Vs::escapeParameters(lineOf(run)));
    for (const std::wstring& line : inputLinesOf(*run.command))
        transcripts->write(Vs::escapeParameters(line));
}

std::vector<std::wstring> TranscriptRecorder::inputLinesOf(const CommandBase& command)
{
    std::vector<std::wstring> lines;
    if (!command.commandInputSet())
        return lines;
    for (const auto& input : command.commandInputSet()->inputs())
        if (input->enableTranscript() && input->isUsable() && input->isShown() && !input->readOnly())
            lines.push_back(L"Commands.SetInput " + Vs::Strings::quote(input->info()->key()) + L" " +
                            Vs::Strings::quote(input->valueAsString()));
    if (!lines.empty())
        lines.push_back(L"Commands.Commit");
    return lines;
}

std::wstring TranscriptRecorder::lineOf(const CommandRun& run)
{
    const CommandContext& context = *run.context;
    if (const Vs::TextCommand* wrapper = wrapperOf(run.definition->id())) {
        std::wstring line = wrapper->area() + L"." + wrapper->name();
        for (size_t i = 0; i < context.arguments(); ++i)
            line += L" " + Vs::Strings::quote(context.argumentAsString(context.argumentName(i)));
        return line;
    }
    std::wstring line = L"Commands.Start " + run.definition->id();
    for (size_t i = 0; i < context.arguments(); ++i) {
        const Vs::UniqueString* name = context.argumentName(i);
        line += L" " + Vs::Strings::quote(name->wideText() + L"=" + context.argumentAsString(name));
    }
    return line;
}

} // namespace Vu
