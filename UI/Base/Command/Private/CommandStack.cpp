#include "UI/Base/Command/Private/CommandStack.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Transaction.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/CommandObserver.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Command/Private/CommandObservers.h"
#include "UI/Base/Command/Private/CommandStacks.h"
#include "UI/Base/Command/Private/CommandSteps.h"
#include "UI/Base/Command/Private/DeferredRuns.h"
#include "UI/Base/Command/Private/Guarded.h"
#include "UI/Base/Command/SimpleCommand.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace Vu {

namespace {

CommandMgr* creating = nullptr;

bool startedInCanvas(const CommandBase* command)
{
    return command->commandContext()->commandAccessPoint() == ECommandAccessPoint::Canvas;
}

} // namespace

/// Counts the calls that are inside the stack's functions. When the outermost one returns, the stack settles,
/// or is deleted if its manager has gone meanwhile.
class CommandStack::UnderWay
{
public:
    explicit UnderWay(CommandStack& stack) : m_stack(stack) { ++m_stack.m_underWay; }
    ~UnderWay()
    {
        if (m_stack.m_underWay == 1 && m_stack.m_emptied)
            m_stack.settle();
        if (--m_stack.m_underWay == 0 && !m_stack.m_manager)
            delete &m_stack;
    }

private:
    CommandStack& m_stack;
};

/// While this exists, no suspended command is resumed because the one above it ended.
class CommandStack::MakingRoom
{
public:
    explicit MakingRoom(CommandStack& stack) : m_stack(stack) { ++m_stack.m_makingRoom; }
    ~MakingRoom() { --m_stack.m_makingRoom; }

private:
    CommandStack& m_stack;
};

CommandStack::CommandStack(CommandMgr* manager, AssetSession* session)
    : m_number(CommandStacks::add(*this)), m_manager(manager), m_session(session)
{
    Vs::assertMainThread();
}

CommandStack::~CommandStack() = default;

void CommandStack::close()
{
    m_closing = true;
    {
        UnderWay underWay(*this);
        DeferredRuns::drop(m_manager, m_session);
        terminateAll(ETerminationReason::Cancel);
        for (CommandBase* command : m_executing)
            command->m_manager = nullptr;
        for (CommandBase* command : m_commands)
            command->m_manager = nullptr;
        CommandStacks::remove(m_number);
        if (m_session) {
            forget(m_session);
            CommandStacks::forEachVisitor([this](const CommandStack& stack) { stack.forget(m_session); });
        }
        m_manager = nullptr;
    }
}

/// A command may outlive the session that it was called in, like a script that closes it.
void CommandStack::forget(const AssetSession* session) const
{
    for (const auto* commands : {&m_executing, &m_commands})
        for (CommandBase* command : *commands)
            if (command->m_context.assetSession() == session)
                command->m_context.assetSession(nullptr);
}

Vs::Status CommandStack::run(CommandDefinition* definition, const CommandContext& context, Mode mode)
{
    Vs::assertMainThread();
    Vs::require(definition != nullptr, "a command that is run has a definition");
    Vs::Status status;
    UnderWay underWay(*this);
    const bool observed = mode != Mode::Resting;
    CommandRun record{m_manager, definition, &context};
    record.depth = m_underWay - 1;
    record.status = &status;
    if (observed)
        m_alerts.addAlerts(CommandObservers::tell(&ICommandObserver::before, record));

    CommandBase* command = create(definition, context, status);
    if (!command) {
        record.refused = status.isOk();
        record.reason = ETerminationReason::Cancel;
        if (observed)
            m_alerts.addAlerts(CommandObservers::tell(&ICommandObserver::after, record));
        return status;
    }
    CommandInUse inUse(command);
    if (command->assetSession() && command->assetSession() != m_session)
        CommandStacks::visits(m_number);
    command->m_runDepth = record.depth;
    command->m_observed = observed;
    if (observed && record.depth == 0 && command->repeatable())
        m_lastDefinition = definition;

    SimpleCommand* const simple = Vs::cast<SimpleCommand>(command);
    const auto prepare = [&] {
        makeRoomFor(command, !simple);
        if (const std::wstring environment = definition->preferredEnvironment(); !environment.empty())
            CommandHost::get()->activateEnvironment(command->assetSession(), environment);
    };
    if (!guarded(status, prepare))
        leave(command, ETerminationReason::Cancel, status);
    else if (simple)
        execute(simple, status);
    else
        begin(command, status);

    if (mode != Mode::Called || context.isByHand())
        m_alerts.addAlerts(status);
    return status;
}

CommandBase* CommandStack::create(CommandDefinition* definition, const CommandContext& context,
                                  Vs::Status& status)
{
    CommandMgr* const outer = std::exchange(creating, m_manager);
    CommandBase* command = nullptr;
    guarded(status, [&] {
        CommandContext own(context);
        command = definition->createCommand(&own);
    });
    creating = outer;
    return command;
}

namespace {

/// A command that only inspects the model also sees the result of an undo.
bool outlastsSteps(const CommandBase& running)
{
    const CommandDefinition* definition = running.commandDefinition();
    return definition && definition->readonly() && definition->id() != CommandDefinition::selectCommandId();
}

bool walksSteps(const CommandBase& command)
{
    using namespace std::string_view_literals; // Of which most others differ by their length alone.
    const CommandDefinition* definition = command.commandDefinition();
    const std::wstring_view id = definition ? std::wstring_view(definition->id()) : std::wstring_view();
    return id == L"UndoCommand"sv || id == L"RedoCommand"sv;
}

} // namespace

std::vector<CommandBase*> CommandStack::leavingFor(CommandBase* command) const
{
    const EStackingBehavior behavior = command->onStackingBehavior();
    auto first = m_commands.begin();
    if (walksSteps(*command) && std::all_of(m_commands.begin(), m_commands.end(),
                                            [](const auto* running) { return outlastsSteps(*running); }))
        return {};
    if (behavior == EStackingBehavior::OverCategory) {
        // A chosen tool comes back when the one held by a mouse button ends.
        const bool held = startedInCanvas(command);
        first = std::find_if(m_commands.begin(), m_commands.end(), [&](const CommandBase* running) {
            return running->m_category == command->m_category &&
                   running->m_state != CommandBase::State::Ending && (!held || startedInCanvas(running));
        });
    } else if (behavior == EStackingBehavior::ByType && command->onCommandType() == ECommandType::Nested) {
        first = m_commands.end();
        while (first != m_commands.begin() && !(*(first - 1))->canCommandRunAsNested(command))
            --first;
    }
    return {first, m_commands.end()};
}

void CommandStack::makeRoomFor(CommandBase* command, bool stays)
{
    if (command->onStackingBehavior() == EStackingBehavior::OverCategory)
        command->m_category = command->onStackingCategory();
    if (m_commands.empty())
        return;
    Vs::Status problems;
    {
        MakingRoom making(*this);
        endAll(leavingFor(command), ETerminationReason::Cancel, problems);
        // A command may start others as it ends or is suspended. They stay, beneath the new one, as long as
        // the rules allow; one that never stops doing so must not hang the program.
        constexpr int kPatience = 16;
        for (int i = 0; i < kPatience; ++i) {
            if (stays && !m_commands.empty() && m_commands.back()->isActive()) {
                if (command->onAbortsParentTransactionWhenStacked())
                    m_commands.back()->m_preview.reset();
                suspend(m_commands.back());
            }
            const std::vector<CommandBase*> same =
                command->m_category ? leavingFor(command) : std::vector<CommandBase*>();
            if (same.empty() && !(stays && !m_commands.empty() && m_commands.back()->isActive()))
                break;
            endAll(same, ETerminationReason::Cancel, problems);
        }
    }
    m_alerts.addAlerts(problems);
    if (!stays)
        resumeTop();
}

void CommandStack::endAll(const std::vector<CommandBase*>& leaving, ETerminationReason reason,
                          Vs::Status& status)
{
    for (auto each = leaving.rbegin(); each != leaving.rend(); ++each)
        if (std::find(m_commands.begin(), m_commands.end(), *each) != m_commands.end())
            end(*each, reason, status);
}

void CommandStack::execute(SimpleCommand* command, Vs::Status& status)
{
    m_executing.push_back(command);
    CommandStacks::executes(m_number, true);
    command->m_state = CommandBase::State::Begun;
    const bool came =
        guarded(status, [&] { command->onBegin(); }) && guarded(status, [&] { command->onExecute(status); });

    ETerminationReason reason = status.isOk() ? ETerminationReason::Commit : ETerminationReason::Cancel;
    if (came && command->m_endAsked)
        reason = command->m_askedReason;
    command->m_state = CommandBase::State::Ending;
    // Some keep what they did before they failed.
    const bool keep = reason == ETerminationReason::Commit || !command->onAbortTransactionOnFailure(status);
    guarded(status, [&] { command->onPreCommandEnd(); });
    guarded(status, [&] { command->endStep(reason); });
    guarded(status, [&] { command->onEnd(reason); });
    guarded(status, [&] { CommandSteps::end(command, keep); });
    std::erase(m_executing, static_cast<CommandBase*>(command));
    if (m_executing.empty())
        CommandStacks::executes(m_number, false);
    leave(command, reason, status);
}

void CommandStack::begin(CommandBase* command, Vs::Status& status)
{
    m_alerts.clearBlockingAlerts();
    m_commands.push_back(command);
    command->m_state = CommandBase::State::Begun;
    const bool came = guarded(status, [&] {
        if (Command* withInputs = Vs::cast<Command>(command))
            withInputs->createCommandInputs();
        command->onBegin();
        // A command that changes nothing has no steps, for which the whole selection would be written down.
        if (command->commandInputSet() && !command->commandDefinition()->readonly())
            CommandSteps::of(*command);
    });
    if (!came)
        end(command, ETerminationReason::Cancel, status);
    else if (command->m_state == CommandBase::State::Begun && m_commands.back() == command)
        activate(command, status);
    else if (command->m_state == CommandBase::State::Begun)
        command->m_state =
            CommandBase::State::Suspended; // It started another one over itself: its turn comes later.
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

void CommandStack::activate(CommandBase* command, Vs::Status& status)
{
    CommandInUse inUse(command);
    command->m_state = CommandBase::State::Active;
    const bool came = guarded(status, [&] {
        command->onActivate();
        if (command->m_state == CommandBase::State::Active)
            command->onPostActivate();
    });
    if (!came)
        end(command, ETerminationReason::Cancel, status);
}

void CommandStack::suspend(CommandBase* command)
{
    if (command->m_state != CommandBase::State::Active)
        return;
    CommandInUse inUse(command);
    Vs::Status problems;
    command->m_state = CommandBase::State::Suspended;
    guarded(problems, [&] { command->onDeactivate(); });
    if (command->m_state == CommandBase::State::Suspended)
        guarded(problems, [&] { command->onSuspend(); });
    m_alerts.addAlerts(problems);
}

void CommandStack::resumeTop()
{
    if (m_closing || m_makingRoom > 0 || m_commands.empty())
        return;
    CommandBase* const command = m_commands.back();
    if (command->m_state != CommandBase::State::Suspended)
        return;
    CommandInUse inUse(command);
    Vs::Status problems;
    // Called while it still counts as suspended: if it ends itself here, it isn't deactivated a second time.
    if (!guarded(problems, [&] { command->onResume(); }))
        end(command, ETerminationReason::Cancel, problems);
    else if (command->m_state == CommandBase::State::Suspended && m_commands.back() == command)
        activate(command, problems);
    m_alerts.addAlerts(problems);
}

void CommandStack::destroy(CommandBase* command, ETerminationReason reason)
{
    UnderWay underWay(*this);
    if (std::find(m_executing.begin(), m_executing.end(), command) != m_executing.end()) {
        command->m_endAsked = true;
        command->m_askedReason = reason;
        return;
    }
    Vs::Status problems;
    end(command, reason, problems);
    m_alerts.addAlerts(problems);
}

void CommandStack::end(CommandBase* command, ETerminationReason reason, Vs::Status& status)
{
    using CommandState = CommandBase::State;
    const bool wasActive = command->m_state == CommandState::Active;
    if (!wasActive && command->m_state != CommandState::Begun && command->m_state != CommandState::Suspended)
        return;
    const bool atOnce = command->m_state == CommandState::Begun;
    UnderWay underWay(*this);
    {
        CommandInUse inUse(command);
        command->m_state = CommandState::Ending;
        guarded(status, [&] { command->onPreCommandEnd(); });
        guarded(status, [&] { command->endStep(reason); });
        command->m_preview.reset();
        if (wasActive)
            guarded(status, [&] { command->onDeactivate(); });
        guarded(status, [&] { command->onEnd(reason); });
        guarded(status, [&] { CommandSteps::end(command, reason == ETerminationReason::Commit); });
        std::erase(m_commands, command);
        m_emptied = m_emptied || m_commands.empty();
        m_alerts.clearBlockingAlerts();
        leave(command, reason, status, atOnce);
    }
    resumeTop();
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

void CommandStack::leave(CommandBase* command, ETerminationReason reason, Vs::Status& status, bool atOnce)
{
    Vs::require(command->m_state == CommandBase::State::Made ||
                    command->m_state == CommandBase::State::Ending,
                "a command leaves once, when it has ended or couldn't begin");
    command->m_state = CommandBase::State::Ended;
    guarded(status, [&] { command->onTerminate(reason); });
    guarded(status, [&] { command->onDestroy(reason); });
    if (command->m_observed) {
        CommandRun record{m_manager, command->m_definition, &command->m_context, command, &status, reason};
        record.endedAtOnce = atOnce;
        record.depth = command->m_runDepth;
        m_alerts.addAlerts(CommandObservers::tell(&ICommandObserver::after, record));
    }
    guarded(status, [&] { command->onPreDelete(); });
    if (CommandInputSet* inputs = command->commandInputSet())
        guarded(status, [&] { inputs->commandEnded(); });
    command->m_manager = nullptr;
    command->m_deleteWhenUnused = true;
}

void CommandStack::terminateAll(ETerminationReason reason)
{
    UnderWay underWay(*this);
    MakingRoom making(*this);
    Vs::Status problems;
    endAll(std::vector<CommandBase*>(m_commands), reason, problems);
    m_alerts.addAlerts(problems);
}

void CommandStack::settle()
{
    m_emptied = false;
    if (m_session)
        startDefaultCommand();
}

void CommandStack::startDefaultCommand()
{
    if (m_closing || m_startingDefault || !m_commands.empty())
        return;
    CommandDefinition* const usual =
        CommandDefinitionMgr::get()->findCommandDefinitionById(CommandDefinition::selectCommandId());
    CommandManagerDefaultCommandEvent event(m_manager, usual);
    CommandEventSource::get()->fireCommandManagerDefaultCommand(&event);
    if (!event.commandDefinition())
        return;
    UnderWay underWay(*this);
    CommandContext context = CommandContext::activeContext();
    context.assetSession(m_session);
    m_startingDefault = true;
    std::ignore = run(event.commandDefinition(), context, Mode::Resting); // Errors are alerts.
    m_startingDefault = false;
    m_emptied = false;
}

CommandBase* CommandStack::activeCommand() const
{
    for (auto each = m_commands.rbegin(); each != m_commands.rend(); ++each)
        if ((*each)->m_state != CommandBase::State::Ending)
            return *each;
    return nullptr;
}

CommandBase* CommandStack::executingAnywhere()
{
    const CommandStack* stack = CommandStacks::executing();
    return stack ? stack->executingCommand() : nullptr;
}

bool CommandStack::defer(CommandDefinition* definition, const CommandContext& context)
{
    return DeferredRuns::add(m_manager, definition, context);
}

CommandMgr* CommandStack::creatingManager()
{
    return creating;
}

void CommandStack::definitionGone(CommandDefinition* definition)
{
    DeferredRuns::drop(definition);
    // All of them before the first one ends: that may close the sessions of others.
    CommandStacks::forEach([definition](CommandStack& stack) {
        if (stack.m_lastDefinition == definition)
            stack.m_lastDefinition = nullptr;
        for (const auto* commands : {&stack.m_executing, &stack.m_commands})
            for (CommandBase* command : *commands)
                command->m_definitionGone = command->m_definitionGone || command->m_definition == definition;
    });
    CommandStacks::forEach([](CommandStack& stack) {
        UnderWay underWay(stack);
        const std::vector<CommandBase*> commands = stack.m_commands;
        for (auto each = commands.rbegin(); each != commands.rend(); ++each)
            if (std::ranges::find(stack.m_commands, *each) != stack.m_commands.end() &&
                (*each)->m_definitionGone)
                stack.destroy(*each, ETerminationReason::Cancel);
    });
}

void CommandStack::terminateAllStacks(ETerminationReason reason)
{
    CommandStacks::forEach([reason](CommandStack& stack) { stack.terminateAll(reason); });
}

} // namespace Vu
