#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Vu {

class CommandBase;
class CommandDefinition;
class SimpleCommand;

/// The implementation of a command manager: runs the commands, and is the one place that every run passes
/// through. Private to the command model; see CommandMgr for what it does and CommandBase for the order of
/// calls.
class CommandStack
{
public:
    CommandStack(CommandMgr* manager, AssetSession* session);
    /// The manager is being destroyed: ends what runs. The stack deletes itself when the last run in progress
    /// returns.
    void close();

    enum class Mode {
        Called,   ///< By the user, a line, a script, another command.
        Deferred, ///< The same, later: nobody waits for the status.
        Resting,  ///< By the host, because nothing else runs.
    };
    Vs::Status run(CommandDefinition* definition, const CommandContext& context, Mode mode);
    /// Queues the run; false if there is no queue.
    [[nodiscard]] bool defer(CommandDefinition* definition, const CommandContext& context);
    void destroy(CommandBase* command, ETerminationReason reason);
    void terminateAll(ETerminationReason reason);
    void startDefaultCommand();

    CommandBase* activeCommand() const;
    const std::vector<CommandBase*>& commands() const { return m_commands; }
    /// The simple command that is executing right now, of any manager; null if none.
    static CommandBase* executingAnywhere();
    CommandBase* executingCommand() const { return m_executing.empty() ? nullptr : m_executing.back(); }
    AssetSession* session() const { return m_session; }
    CommandDefinition* lastDefinition() const { return m_lastDefinition; }
    AlertController& alerts() { return m_alerts; }

    /// The manager for which a command is being made right now; the new command belongs to it.
    static CommandMgr* creatingManager();
    static void definitionGone(CommandDefinition* definition);
    static void terminateAllStacks(ETerminationReason reason);

private:
    class UnderWay;
    class MakingRoom;

    ~CommandStack();
    CommandBase* create(CommandDefinition* definition, const CommandContext& context, Vs::Status& status);
    void makeRoomFor(CommandBase* command, bool stays);
    std::vector<CommandBase*> leavingFor(CommandBase* command) const;
    void endAll(const std::vector<CommandBase*>& leaving, ETerminationReason reason, Vs::Status& status);
    void execute(SimpleCommand* command, Vs::Status& status);
    void begin(CommandBase* command, Vs::Status& status);
    void activate(CommandBase* command, Vs::Status& status);
    void suspend(CommandBase* command);
    void resumeTop();
    void end(CommandBase* command, ETerminationReason reason, Vs::Status& status);
    void leave(CommandBase* command, ETerminationReason reason, Vs::Status& status, bool atOnce = false);
    void settle();
    void forget(const AssetSession* session) const;

    const uint64_t m_number; ///< In CommandStacks.
    CommandMgr* m_manager;
    AssetSession* m_session;
    std::vector<CommandBase*> m_commands;
    std::vector<CommandBase*> m_executing;
    CommandDefinition* m_lastDefinition = nullptr;
    AlertController m_alerts;
    int m_underWay = 0;
    int m_makingRoom = 0;
    bool m_closing = false;
    bool m_emptied = false;
    bool m_startingDefault = false;
};

} // namespace Vu
