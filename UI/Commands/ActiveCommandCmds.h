#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class CancelCmd;

/// Cancels the session's active command.
class CancelCmdDef : public CommandRowDefinition<CancelCmdDef, CancelCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class CancelCmd : public Vs::Implements<CancelCmd, SimpleCommand>
{
public:
    CancelCmd(CancelCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

class CommitCmd;

/// Ends the session's active command with its result.
class CommitCmdDef : public CommandRowDefinition<CommitCmdDef, CommitCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class CommitCmd : public Vs::Implements<CommitCmd, SimpleCommand>
{
public:
    CommitCmd(CommitCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
