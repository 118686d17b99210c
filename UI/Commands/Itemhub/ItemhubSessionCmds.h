#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"

#include <functional>

namespace Vu::Commands {

class ItemhubSignInCmd;
class ItemhubSignOutCmd;
class ItemhubDashboardCmd;

/// Lets the user sign in to the lifecycle service; scripts have lines for that.
class ItemhubSignInCmdDef : public ItemhubDefinition<ItemhubSignInCmdDef, ItemhubSignInCmd>
{
public:
    static const CommandRow kRow;
    static Info* info();
    static void createCommandDef();

    ItemhubSignInCmdDef();

    /// The function that asks: shows a dialog until the user has signed in or given up. Installed by the
    /// widgets' library; null removes it.
    using Asker = std::function<void()>;
    static void asker(Asker asker);

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ItemhubSignInCmd : public Vs::Implements<ItemhubSignInCmd, SimpleCommand>
{
public:
    ItemhubSignInCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class ItemhubSignOutCmdDef : public ItemhubDefinition<ItemhubSignOutCmdDef, ItemhubSignOutCmd>
{
public:
    static const CommandRow kRow;
    static Info* info();
    static void createCommandDef();

    ItemhubSignOutCmdDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ItemhubSignOutCmd : public Vs::Implements<ItemhubSignOutCmd, SimpleCommand>
{
public:
    ItemhubSignOutCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

/// Opens the service's page in the browser, signed in.
class ItemhubDashboardCmdDef : public ItemhubDefinition<ItemhubDashboardCmdDef, ItemhubDashboardCmd>
{
public:
    static const CommandRow kRow;
    static void createCommandDef();
};

class ItemhubDashboardCmd : public Vs::Implements<ItemhubDashboardCmd, SimpleCommand>
{
public:
    ItemhubDashboardCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
