#include "UI/Base/Window/ClickedLines.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/TranscriptRecorder.h"
#include "UI/Base/Command/SimpleCommand.h"

namespace Vu {
namespace {

/// A user who closes a panel sees its effect.
bool endsAnother(const CommandDefinition& definition)
{
    return definition.id() == L"CommitCommand" || definition.id() == L"CancelCommand";
}

bool isTold(const CommandRun& run)
{
    return run.depth == 0 && run.command && run.context->isByHand() && run.definition->scriptable() &&
           !endsAnother(*run.definition);
}

} // namespace

ClickedLines::ClickedLines(std::function<void(const std::wstring&)> tell) : m_tell(std::move(tell))
{
    CommandMgr::addObserver(this);
    m_subscriptions.add(CommandEventSource::get(), this);
    CommandInputEventSource::get()->subscribe(this, nullptr);
}

ClickedLines::~ClickedLines()
{
    CommandInputEventSource::get()->unsubscribe(this, nullptr);
    m_subscriptions.clear();
    CommandMgr::removeObserver(this);
}

// A panel may stay open for long.
void ClickedLines::commandCreated(CommandCreatedEvent* event)
{
    CommandBase* command = event->command();
    const auto* panel = Vs::cast<Command>(command);
    if (!panel || panel->onArgumentsSayAll() || !command->commandContext()->isByHand())
        return;
    CommandRun run{nullptr, command->commandDefinition(), command->commandContext()};
    m_tell(TranscriptRecorder::lineOf(run));
}

void ClickedLines::after(const CommandRun& run)
{
    if (!isTold(run))
        return;
    const auto* panel = Vs::cast<Command>(run.command);
    const bool committed = run.reason == ETerminationReason::Commit;
    if (Vs::cast<SimpleCommand>(run.command) || (panel && panel->onArgumentsSayAll())) {
        if (committed)
            m_tell(TranscriptRecorder::lineOf(run));
    } else if (panel) {
        m_tell(committed ? L"Commands.Commit" : L"Commands.Cancel");
    }
}

void ClickedLines::onCommandInputEvent(CommandInputEvent* event)
{
    const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
    const CommandInputBase* input = change ? change->commandInput() : nullptr;
    const auto* panel = input ? Vs::cast<Command>(input->commandInputSet()->command()) : nullptr;
    if (!panel || !panel->isActive() || !panel->commandContext()->isByHand() || panel->onArgumentsSayAll() ||
        !input->enableTranscript() || change->kind() != CommandInputValueChangeEvent::EKind::Entered)
        return;
    m_tell(L"Commands.SetInput " + Vs::Strings::quote(input->info()->key()) + L' ' +
           Vs::Strings::quote(input->valueAsString()));
}

} // namespace Vu
