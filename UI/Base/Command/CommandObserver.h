#pragma once

#include "UI/Base/Command/CommandTypes.h"

namespace Vs {
class Status;
}

namespace Vu {

class CommandBase;
class CommandContext;
class CommandDefinition;
class CommandMgr;

/// One run of a command, as an observer sees it.
struct CommandRun
{
    CommandMgr* manager;
    CommandDefinition* definition;
    /// What the command was called with; once it was made, its own copy with what it added.
    const CommandContext* context;
    /// Null before the command is made, and if it was refused.
    CommandBase* command = nullptr;
    /// The errors so far.
    const Vs::Status* status = nullptr;
    ETerminationReason reason = ETerminationReason::Commit;
    /// The definition didn't make the command.
    bool refused = false;
    /// The command ended itself while it began: nobody could give its inputs a value.
    bool endedAtOnce = false;
    /// How many runs of the same manager this one is inside; 0 for what the user, a line or a script called.
    int depth = 0;
};

/// Sees every run of every command, at one place: recording, undo steps, usage reports, error reports and the
/// busy cursor are observers. Resting commands, which the host starts of itself, are not seen.
class ICommandObserver
{
public:
    virtual ~ICommandObserver() = default;
    /// Before the command is made.
    virtual void before(const CommandRun&) {}
    /// After the command has ended: for an interactive command that may be much later. Called before it is
    /// deleted; each `before` has its `after`.
    virtual void after(const CommandRun&) {}
};

} // namespace Vu
