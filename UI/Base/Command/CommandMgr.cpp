#include "UI/Base/Command/CommandMgr.h"

#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Command/Private/CommandObservers.h"
#include "UI/Base/Command/Private/CommandStack.h"

#include <tuple>

namespace Vu {

CommandMgr::CommandMgr(AssetSession* session) : m_stack(new CommandStack(this, session))
{
    CommandManagerEvent event(this);
    CommandEventSource::get()->fireCommandManagerCreated(&event);
}

CommandMgr::~CommandMgr()
{
    m_stack->close();
}

CommandMgr* CommandMgr::get()
{
    // Never destroyed: commands may still be asked to end while the process is shutting down.
    static CommandMgr* const manager = new CommandMgr;
    return manager;
}

CommandMgr* CommandMgr::getActiveCommandManager()
{
    CommandHost* host = CommandHost::get();
    AssetSession* session = host->activeAssetSession();
    return session ? host->commandManager(session) : nullptr;
}

Vs::Status CommandMgr::executeCommand(CommandDefinition* definition, const CommandContext& context)
{
    if (!definition) {
        Vs::Status status;
        status.addError(L"There is no such command.");
        return status;
    }
    if (!context.executeImmediately() && m_stack->defer(definition, context))
        return {};
    return m_stack->run(definition, context, CommandStack::Mode::Called);
}

Vs::Status CommandMgr::executeCommand(std::wstring_view id, const CommandContext& context)
{
    CommandDefinitionMgr* definitions = CommandDefinitionMgr::get();
    if (CommandDefinition* definition = definitions->findCommandDefinitionById(id))
        return executeCommand(definition, context);

    constexpr size_t kShownLength = 80;
    std::wstring message = L"There is no command \"" + std::wstring(id.substr(0, kShownLength)) +
                           (id.size() > kShownLength ? L"...\"." : L"\".");
    const std::vector<std::wstring> similar = definitions->similarIds(id);
    for (size_t i = 0; i < similar.size(); ++i)
        message += (i == 0 ? L" Did you mean \"" : L"\", \"") + similar[i];
    if (!similar.empty())
        message += L"\"?";
    Vs::Status status;
    status.addError(message);
    return status;
}

void CommandMgr::executeLater(CommandDefinition* definition, CommandContext context)
{
    context.executeImmediately(false);
    std::ignore = executeCommand(definition, context); // The errors of the run become alerts.
}

void CommandMgr::executeLater(std::wstring_view id, CommandContext context)
{
    if (CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(id))
        executeLater(definition, std::move(context));
    else
        m_stack->alerts().addAlerts(executeCommand(id, context));
}

void CommandMgr::executeDeferred(CommandDefinition* definition, const CommandContext& context)
{
    std::ignore = m_stack->run(definition, context, CommandStack::Mode::Deferred); // Errors are alerts.
}

CommandBase* CommandMgr::activeCommand() const
{
    return m_stack->activeCommand();
}

const std::vector<CommandBase*>& CommandMgr::commandStack() const
{
    return m_stack->commands();
}

CommandBase* CommandMgr::executingCommand() const
{
    return m_stack->executingCommand();
}

AssetSession* CommandMgr::assetSession() const
{
    return m_stack->session();
}

CommandDefinition* CommandMgr::lastCommandDef() const
{
    return m_stack->lastDefinition();
}

AlertController* CommandMgr::GetAlertController()
{
    return &m_stack->alerts();
}

void CommandMgr::terminateAll(ETerminationReason reason)
{
    m_stack->terminateAll(reason);
}

void CommandMgr::terminateAllCommands(ETerminationReason reason)
{
    CommandStack::terminateAllStacks(reason);
}

void CommandMgr::startDefaultCommand()
{
    m_stack->startDefaultCommand();
}

void CommandMgr::addObserver(ICommandObserver* observer)
{
    CommandObservers::add(observer);
}

void CommandMgr::removeObserver(ICommandObserver* observer)
{
    CommandObservers::remove(observer);
}

} // namespace Vu
