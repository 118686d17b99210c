#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Command/CommandContext.h"

#include <string_view>
#include <vector>

namespace Vu {

class AlertController;
class CommandBase;
class CommandDefinition;
class CommandStack;
class ICommandObserver;

/// Runs commands and holds the stack of those that stay active. Each asset session has one of its own; one
/// more, the global one, runs what belongs to no session. The stacks of two managers know nothing of each
/// other.
///
/// A new command meets the stack by its type and stacking: it ends what runs, takes the place of the running
/// command of its category, stacks over the active one (which is suspended), or runs nested in it. Commands
/// that are ended to make room end with reason Cancel, the topmost first. Main thread only.
class CommandMgr
{
public:
    /// `session` may be null. Fires CommandEventSite::commandManagerCreated.
    explicit CommandMgr(AssetSession* session = nullptr);
    /// Cancels what still runs.
    ~CommandMgr();
    CommandMgr(const CommandMgr&) = delete;
    CommandMgr& operator=(const CommandMgr&) = delete;

    /// The global manager.
    static CommandMgr* get();
    /// The manager of the active asset session; null if there is none.
    static CommandMgr* getActiveCommandManager();

    /// Runs a command. The answer holds the errors of a command that ended inside the call; it is ok for one
    /// that stays active, that was refused, or that was deferred (CommandContext::executeImmediately).
    /// Doesn't ask whether the definition is applicable. An unknown id is an error that names the nearest
    /// ones.
    Vs::Status executeCommand(CommandDefinition* definition, const CommandContext& context);
    Vs::Status executeCommand(std::wstring_view id, const CommandContext& context);
    /// Runs a command as a deferred task after the current event; its errors become alerts.
    void executeLater(CommandDefinition* definition, CommandContext context);
    void executeLater(std::wstring_view id, CommandContext context);

    /// The topmost interactive command, the one that takes the user's events; null if none runs. A one-shot
    /// command that is being executed is not it.
    CommandBase* activeCommand() const;
    /// All interactive commands that run, the topmost last.
    const std::vector<CommandBase*>& commandStack() const;
    /// The one-shot command that is being executed, the innermost if there are several; null if none.
    CommandBase* executingCommand() const;

    AssetSession* assetSession() const;
    /// The definition of the command that ran last and may be repeated; null if there was none.
    CommandDefinition* lastCommandDef() const;
    AlertController* GetAlertController();

    /// Ends every running command, the topmost first.
    void terminateAll(ETerminationReason reason);
    /// The same for every manager there is: before add-ins are unloaded.
    static void terminateAllCommands(ETerminationReason reason);

    /// Starts the resting command (CommandEventSite::commandManagerDefaultCommand) if nothing runs. Happens
    /// by itself after each run that left the stack of a session's manager empty; a session calls it when it
    /// is shown for the first time.
    void startDefaultCommand();

    /// Observers of all managers, not owned, called in the order in which they were added.
    static void addObserver(ICommandObserver* observer);
    static void removeObserver(ICommandObserver* observer);

    /// Runs what was deferred; for the queue.
    void executeDeferred(CommandDefinition* definition, const CommandContext& context);

private:
    friend class CommandBase;
    friend class CommandDefinition;

    /// Outlives the manager while a command of it runs: closing a document, say, deletes the manager that
    /// runs the close.
    CommandStack* m_stack;
};

} // namespace Vu
