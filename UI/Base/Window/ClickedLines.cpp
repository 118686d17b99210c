#include "UI/Base/Window/ClickedLines.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/TranscriptRecorder.h"
#include "UI/Base/Command/SimpleCommand.h"

namespace Vu {
namespace {

bool isByHand(const CommandContext& context)
{
    switch (context.commandAccessPoint()) {
    case ECommandAccessPoint::Toolbar:
    case ECommandAccessPoint::ApplicationMenu:
    case ECommandAccessPoint::Menu:
    case ECommandAccessPoint::ContextMenu:
    case ECommandAccessPoint::Canvas:
    case ECommandAccessPoint::HotKey:
    case ECommandAccessPoint::Repeat:
        return true;
    default:
        return false;
    }
}

/// Who ends a panel is told by what becomes of that one.
bool endsAnother(const CommandDefinition& definition)
{
    return definition.id() == L"CommitCommand" || definition.id() == L"CancelCommand";
}

bool isTold(const CommandRun& run)
{
    return run.depth == 0 && run.command && isByHand(*run.context) && run.definition->scriptable() &&
           !endsAnother(*run.definition);
}

} // namespace

ClickedLines::ClickedLines(std::function<void(const std::wstring&)> tell) : m_tell(std::move(tell))
{
    CommandMgr::addObserver(this);
    CommandEventSource::get()->subscribe(this);
    CommandInputEventSource::get()->subscribe(this, nullptr);
}

ClickedLines::~ClickedLines()
{
    CommandInputEventSource::get()->unsubscribe(this, nullptr);
    CommandEventSource::get()->unsubscribe(this);
    CommandMgr::removeObserver(this);
}

// A panel may be open for long.
void ClickedLines::commandCreated(CommandCreatedEvent* event)
{
    CommandBase* command = event->command();
    const auto* panel = Vs::cast<Command>(command);
    if (!panel || panel->onArgumentsSayAll() || !isByHand(*command->commandContext()))
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
    if (!panel || !panel->isActive() || !isByHand(*panel->commandContext()) || panel->onArgumentsSayAll() ||
        !input->enableTranscript() || change->kind() != CommandInputValueChangeEvent::EKind::Entered)
        return;
    m_tell(L"Commands.SetInput " + Vs::Strings::quote(input->info()->key()) + L' ' +
           Vs::Strings::quote(input->valueAsString()));
}

} // namespace Vu
