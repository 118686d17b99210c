#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class NextAssetCmd;

/// Goes to the next asset session of the shell. The list doesn't wrap.
class NextAssetCmdDef : public CommandRowDefinition<NextAssetCmdDef, NextAssetCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class NextAssetCmd : public Vs::Implements<NextAssetCmd, SimpleCommand>
{
public:
    NextAssetCmd(NextAssetCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

class PreviousAssetCmd;

/// Goes to the previous asset session of the shell.
class PreviousAssetCmdDef : public CommandRowDefinition<PreviousAssetCmdDef, PreviousAssetCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class PreviousAssetCmd : public Vs::Implements<PreviousAssetCmd, SimpleCommand>
{
public:
    PreviousAssetCmd(PreviousAssetCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

class SwitchAssetCmd;

/// Goes to the asset session that the context names; for scripts.
class SwitchAssetCmdDef : public CommandRowDefinition<SwitchAssetCmdDef, SwitchAssetCmd>
{
public:
    static const CommandRow kRow;

    static const Vs::UniqueString* assetSessionArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class SwitchAssetCmd : public Vs::Implements<SwitchAssetCmd, SimpleCommand>
{
public:
    SwitchAssetCmd(SwitchAssetCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

/// Closes one asset, and with the last one its document. Asks about a dirty document before a command is
/// created.
class CloseAssetCmdDef : public RowDefinition<CloseAssetCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CloseAssetCmd : public Vs::Implements<CloseAssetCmd, SimpleCommand>
{
protected:
    friend class CloseAssetCmdDef;
    CloseAssetCmd(CloseAssetCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
};

} // namespace Vu::Commands
