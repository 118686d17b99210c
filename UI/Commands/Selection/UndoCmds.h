#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class UndoCmd;

/// Undoes the last step: of the running tool if that can, otherwise of the asset.
class UndoCmdDef : public CommandRowDefinition<UndoCmdDef, UndoCmd>
{
public:
    static const CommandRow kRow;

    void onUpdateTooltip(ToolTipInfo& tooltip) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext*) const override { return true; }
};

class RedoCmd;

/// Redoes the step undone last.
class RedoCmdDef : public CommandRowDefinition<RedoCmdDef, RedoCmd>
{
public:
    static const CommandRow kRow;

    void onUpdateTooltip(ToolTipInfo& tooltip) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext*) const override { return true; }
};

/// Base of undo and redo. The argument "TxnIndex" asks for several steps at once: all those up to the one at
/// that index in the list, of which 0 is the nearest.
class UndoRedoCmd : public Vs::Implements<UndoRedoCmd, SimpleCommand>
{
protected:
    UndoRedoCmd(CommandDefinition* definition, CommandContext* context, bool undo);

    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;
    /// Nested if and only if the active command can undo the step itself: otherwise that command is ended
    /// first.
    ECommandType onCommandType() const override;

private:
    void step(CommandBase& command);
    bool runningToolTakesIt();

    bool m_undo;
};

class UndoCmd : public Vs::Implements<UndoCmd, UndoRedoCmd>
{
public:
    UndoCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context, true) {}
};

class RedoCmd : public Vs::Implements<RedoCmd, UndoRedoCmd>
{
public:
    RedoCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context, false)
    {
    }
};

} // namespace Vu::Commands
