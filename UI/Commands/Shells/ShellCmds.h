#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Shows the home screen.
class ManagementShellCmdDef : public RowDefinition<ManagementShellCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ManagementShellCmd : public Vs::Implements<ManagementShellCmd, SimpleCommand>
{
protected:
    friend class ManagementShellCmdDef;
    ManagementShellCmd(ManagementShellCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

/// Brings an asset session up in the asset shell.
class AssetShellCmdDef : public RowDefinition<AssetShellCmdDef>
{
public:
    static const CommandRow kRow;

    static const Vs::UniqueString* assetSessionArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class AssetShellCmd : public Vs::Implements<AssetShellCmd, SimpleCommand>
{
protected:
    friend class AssetShellCmdDef;
    AssetShellCmd(AssetShellCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
