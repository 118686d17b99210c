#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"

#include <memory>
#include <string_view>
#include <vector>

namespace Vu {

class CommandBase;
class CommandDefinition;
class ICommandObserver;
class SimpleCommand;
struct CommandRun;

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

    /// The topmost interactive command, the one that takes the user's events; null if none runs. A one-shot
    /// command that is being executed is not it.
    CommandBase* activeCommand() const;
    /// All interactive commands that run, the topmost last.
    const std::vector<CommandBase*>& commandStack() const { return m_stack; }
    /// The one-shot command that is being executed, the innermost if there are several; null if none.
    CommandBase* executingCommand() const { return m_executing.empty() ? nullptr : m_executing.back(); }

    AssetSession* assetSession() const { return m_session; }
    /// The definition of the command that ran last and may be repeated; null if there was none.
    CommandDefinition* lastCommandDef() const { return m_lastDefinition; }
    AlertController* GetAlertController() { return &m_alerts; }

    /// Ends every running command, the topmost first.
    void terminateAll(ETerminationReason reason);

    /// Starts the resting command (CommandEventSite::commandManagerDefaultCommand) if nothing runs. Happens
    /// of itself after each run that left the stack of a session's manager empty; a session calls it when it
    /// is shown for the first time.
    void startDefaultCommand();

    /// Observers of all managers, not owned, in the order in which they came.
    static void addObserver(ICommandObserver* observer);
    static void removeObserver(ICommandObserver* observer);

private:
    friend class CommandBase;
    friend class CommandDefinition;
    struct Depth;

    Vs::Status run(CommandDefinition* definition, const CommandContext& context, bool resting);
    void defer(CommandDefinition* definition, const CommandContext& context);
    void execute(SimpleCommand* command, Vs::Status& status);
    void begin(CommandBase* command, Vs::Status& status);
    void makeRoomFor(CommandBase* command, bool stays);
    void activate(CommandBase* command);
    void suspend(CommandBase* command);
    void resumeTop();
    void end(CommandBase* command, ETerminationReason reason, Vs::Status& status);
    void endAsked(CommandBase* command, ETerminationReason reason);
    void finished(CommandBase* command, const Vs::Status& status, ETerminationReason reason, int depth);
    void dispose(CommandBase* command);
    void settle();
    static void definitionGone(CommandDefinition* definition);
    static void tell(void (ICommandObserver::*what)(const CommandRun&), const CommandRun& run);
    template <class Action>
    static bool guarded(CommandBase* command, Vs::Status& status, Action&& action);

    AssetSession* m_session;
    std::vector<CommandBase*> m_stack;
    std::vector<CommandBase*> m_executing;
    CommandDefinition* m_lastDefinition = nullptr;
    AlertController m_alerts;
    int m_depth = 0;
    bool m_closing = false;
    bool m_startingDefault = false;
};

} // namespace Vu
