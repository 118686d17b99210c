#pragma once

#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Commands/CommandRow.h"

class TerminateCmdTask;

namespace Vu::Commands {

/// Base of all definitions of camera commands: where they may run, and how they are started in passing, by a
/// mouse button over whatever command is active.
class CameraCmdDef : public Vs::Implements<CameraCmdDef, CommandDefinition>
{
public:
    using Implements::Implements;

    /// "Passive": 1 in a command that was started in passing.
    static const Vs::UniqueString* passiveArgumentName();
    /// A context with "Passive" set. Lives as long as the process.
    static const CommandContext& passiveContext();
    static bool passive(CommandContext* context);

protected:
    /// The context has an asset session with a graphics view.
    bool onIsApplicable(CommandContext* context) const override;
};

/// What all interactive camera commands share: they stack over whatever command is active, and nothing can be
/// selected while they run.
class CameraCmd : public Vs::Implements<CameraCmd, InteractiveCommandBase>
{
public:
    ~CameraCmd() override;

    void onActivate() override;
    void onDeactivate() override;
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
    const Vs::UniqueString* onStackingCategory() const override;

protected:
    CameraCmd(CameraCmdDef* definition, CommandContext* context);

    /// Ends the command at the end of the event, since a command must not go while its own mouse handler
    /// runs. Does nothing while a transcript is replayed, which ends the command by its own events.
    void terminateCommand();

private:
    friend class ::TerminateCmdTask;
    bool m_terminating = false;
    TerminateCmdTask* m_terminator = nullptr; ///< Waiting in the queue, which owns it.
};

} // namespace Vu::Commands
