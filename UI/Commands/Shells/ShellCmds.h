#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class ManagementShellCmd;

/// Shows the home screen.
class ManagementShellCmdDef : public CommandRowDefinition<ManagementShellCmdDef, ManagementShellCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ManagementShellCmd : public Vs::Implements<ManagementShellCmd, SimpleCommand>
{
public:
    ManagementShellCmd(ManagementShellCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

class AssetShellCmd;

/// Activates an asset session in the asset shell.
class AssetShellCmdDef : public CommandRowDefinition<AssetShellCmdDef, AssetShellCmd>
{
public:
    static const CommandRow kRow;

    static const Vs::UniqueString* assetSessionArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class AssetShellCmd : public Vs::Implements<AssetShellCmd, SimpleCommand>
{
public:
    AssetShellCmd(AssetShellCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
