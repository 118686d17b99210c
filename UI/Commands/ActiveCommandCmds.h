#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Gives up the session's active command.
class CancelCmdDef : public RowDefinition<CancelCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CancelCmd : public Vs::Implements<CancelCmd, SimpleCommand>
{
protected:
    friend class CancelCmdDef;
    CancelCmd(CancelCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

/// Ends the session's active command with its result.
class CommitCmdDef : public RowDefinition<CommitCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CommitCmd : public Vs::Implements<CommitCmd, SimpleCommand>
{
protected:
    friend class CommitCmdDef;
    CommitCmd(CommitCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
