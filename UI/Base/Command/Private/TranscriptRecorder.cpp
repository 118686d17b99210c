#include "UI/Base/Command/Private/TranscriptRecorder.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptTrigger.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/ForwardedRun.h"
#include "UI/Base/Command/Private/CommandStack.h"
#include "UI/Base/Command/Private/DeferredRuns.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace Vu {
namespace {

// A line that ends a running command is part of that command, whose own lines say how it ended.
constexpr const wchar_t* kEnding[] = {L"CommitCommand", L"CancelCommand"};
// Its lines are about commands, which record themselves.
constexpr const wchar_t* kDispatching = L"Commands";
// Inside a command with inputs these take back what its inputs had; only the last values are written.
constexpr const wchar_t* kStepping[] = {L"UndoCommand", L"RedoCommand"};

template <size_t kCount>
bool isOneOf(const CommandDefinition* definition, const wchar_t* const (&keys)[kCount])
{
    return std::find(std::begin(keys), std::end(keys), definition->id()) != std::end(keys);
}

/// Whether the run is part of another command's.
bool isInside(const CommandRun& run)
{
    if (run.depth > 0)
        return true;
    const CommandBase* outer = CommandStack::executingAnywhere();
    return outer && outer != run.command && !isOneOf(outer->commandDefinition(), kEnding);
}

bool isInteractive(const CommandRun& run)
{
    return run.command && !Vs::cast<SimpleCommand>(run.command);
}

/// Whether a person's mouse did all that the command did: what has become of the view is recorded by itself.
bool isLedByMouse(const CommandRun& run)
{
    if (!isInteractive(run))
        return false;
    const bool held =
        !run.command->commandInputSet() && run.context->commandAccessPoint() == ECommandAccessPoint::Canvas;
    return held || run.command->onStackingCategory() == StackingCategory::cameraStackingCategory();
}

/// Whether another command called it for a value: the result is among that command's inputs.
bool isHelper(const CommandRun& run)
{
    return isInteractive(run) && run.context->commandAccessPoint() == ECommandAccessPoint::Command;
}

/// Whether the first parameter of the text command names a file.
bool isOfFile(std::wstring_view command)
{
    constexpr std::wstring_view kOfFiles[] = {L"Document.Activate", L"Performance.Report", L"Script.Run",
                                              L"Transcripting.Replay"};
    return std::find(std::begin(kOfFiles), std::end(kOfFiles), command) != std::end(kOfFiles);
}

/// The questions that the package of scripts asks, dozens for a line that does something, and by keys that
/// hold in this run alone.
bool onlyTellsScripts(const Vs::TextCommand& command)
{
    constexpr std::wstring_view kQuestions[] = {L"Added",     L"Body",      L"Bounds",  L"Camera",
                                                L"Component", L"Documents", L"Extents", L"Parts",
                                                L"Selection", L"Successor"};
    return command.area() == L"Script" &&
           std::find(std::begin(kQuestions), std::end(kQuestions), command.name()) != std::end(kQuestions);
}

bool takesEntries()
{
    return Vs::TranscriptMgr::get()->takesEntries();
}

/// Objects have a text that only the wrapper can read.
bool hasObjects(const CommandContext& context)
{
    for (size_t i = 0; i < context.arguments(); ++i)
        if (context.argumentType(i) == CommandContext::EArgType::Object)
            return true;
    return false;
}

} // namespace

bool TranscriptRecorder::isPart(const CommandRun& run) const
{
    return isInside(run) || run.context->partOfCaller() || (m_ownLine && !ForwardedRun::any());
}

// What runs later by itself will be recorded by itself.
bool TranscriptRecorder::isHandedOn(const CommandRun& run) const
{
    return !isInteractive(run) && DeferredRuns::added() != m_deferredBeforeCommand;
}

bool TranscriptRecorder::isRecorded(const CommandRun& run) const
{
    return run.command && run.reason == ETerminationReason::Commit && run.definition->scriptable() &&
           !isPart(run) && !isLedByMouse(run) && !isHelper(run) && !isOneOf(run.definition, kEnding) &&
           !isHandedOn(run);
}

void TranscriptRecorder::write(const std::wstring& line)
{
    if (m_around.entry)
        m_around.entry();
    Vs::writeTranscriptLine(line);
}

void TranscriptRecorder::before(const CommandRun& run)
{
    if (!takesEntries() || isPart(run))
        return;
    if (m_around.before)
        m_around.before();
    m_deferredBeforeCommand = DeferredRuns::added();
    // The command may change what an object is called by, or take it away.
    m_objects.clear();
    const CommandContext& context = *run.context;
    for (size_t i = 0; i < context.arguments(); ++i)
        if (context.argumentType(i) == CommandContext::EArgType::Object)
            m_objects[context.argumentName(i)] = context.argumentAsString(context.argumentName(i));
}

void TranscriptRecorder::after(const CommandRun& run)
{
    if (!takesEntries() || isPart(run) || isLedByMouse(run))
        return;
    if (isInteractive(run) && m_around.camera)
        m_around.camera();
    std::wstring line;
    const CommandBase* tool = run.manager ? run.manager->activeCommand() : nullptr;
    const bool steps = isOneOf(run.definition, kStepping) && tool && tool->commandInputSet();
    if (isRecorded(run) && !steps) {
        line = lineOf(run, m_objects);
        write(line);
        if (!run.endedAtOnce)
            for (const std::wstring& input : inputLinesOf(*run.command))
                Vs::writeTranscriptLine(input);
        m_forwarded = true;
    }
    // What the running tool's preview has shown isn't there when the line is replayed.
    if (tool && tool->commandDefinition()->id() != CommandDefinition::selectCommandId() && m_around.camera)
        m_around.camera();
    if (m_around.after)
        m_around.after(line);
}

void TranscriptRecorder::before(const Vs::TextCommand& command)
{
    m_ownLine = takesEntries() && !CommandStack::executingAnywhere() && command.definitionKey().empty() &&
                command.area() != kDispatching && !onlyTellsScripts(command);
    if (m_ownLine && m_around.before)
        m_around.before();
    m_forwarded = false;
    m_deferredBefore = DeferredRuns::added();
}

void TranscriptRecorder::after(const Vs::TextCommand& command, const Vs::TextCommandParameters& parameters,
                               const Vs::TextCommandResult& result)
{
    if (!std::exchange(m_ownLine, false) || !takesEntries())
        return;
    std::wstring line;
    if (result.first == 0 && !m_forwarded && DeferredRuns::added() == m_deferredBefore) {
        line = command.area() + L'.' + command.name();
        const bool ofFile = isOfFile(line);
        for (unsigned i = 0; i < parameters.parameters(); ++i)
            line +=
                L' ' + Vs::Strings::quote(i == 0 && ofFile ? Vs::TranscriptMgr::get()->portable(parameters[i])
                                                           : parameters[i]);
        for (const std::wstring& flag : parameters.flags())
            line += L" /" + flag;
        write(line);
    }
    if (m_around.after)
        m_around.after(line);
}

std::vector<std::wstring> TranscriptRecorder::inputLinesOf(const CommandBase& command)
{
    std::vector<std::wstring> lines;
    const auto* withInputs = Vs::cast<Command>(&command);
    if (Vs::cast<SimpleCommand>(&command) || (withInputs && withInputs->onArgumentsSayAll()))
        return lines;
    if (const CommandInputSet* inputs = command.commandInputSet())
        for (const auto& input : inputs->inputs())
            if (input->enableTranscript() && input->isUsable() && input->isShown() && !input->readOnly())
                lines.push_back(L"Commands.SetInput " + Vs::Strings::quote(input->info()->key()) + L" " +
                                Vs::Strings::quote(input->valueAsString()));
    lines.push_back(L"Commands.Commit");
    return lines;
}

std::wstring TranscriptRecorder::lineOf(const CommandRun& run, const Texts& objects)
{
    const CommandContext& context = *run.context;
    std::vector<std::wstring> words;
    for (size_t i = 0; i < context.arguments(); ++i) {
        const auto object = objects.find(context.argumentName(i));
        words.push_back(object == objects.end() ? context.argumentAsString(context.argumentName(i))
                                                : object->second);
    }
    const auto* wrapper = TranscriptedCommandTextCommand::of(run.definition->id());
    const bool named = !wrapper || !(hasObjects(context) ||
                                     wrapper->repeats(wrapper->parametersFor(context, words), context));
    for (size_t i = 0; i < context.arguments(); ++i) {
        const Vs::UniqueString* name = context.argumentName(i);
        // A saved document is called by its file.
        const bool isFile =
            context.argumentType(i) == CommandContext::EArgType::Object && words[i].starts_with(L'/');
        if (name == CommandContext::pathArgumentName() || isFile)
            words[i] = Vs::TranscriptMgr::get()->portable(words[i]);
        if (named)
            words[i] = name->wideText() + L'=' + words[i];
    }
    std::wstring line =
        named ? L"Commands.Start " + run.definition->id() : wrapper->area() + L"." + wrapper->name();
    for (const std::wstring& word : named ? words : wrapper->parametersFor(context, words))
        line += L' ' + Vs::Strings::quote(word);
    return line;
}

} // namespace Vu
