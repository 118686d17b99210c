#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/Address.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <utility>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ItemhubSignInCmdDef::kRow = {
    .key = L"ItemhubSignInCommand", .title = "Sign In to ", .icon = &Resources::CloudLogin,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true, .scriptable = false};

constinit const CommandRow ItemhubSignOutCmdDef::kRow = {
    .key = L"ItemhubSignOutCommand", .title = "Sign Out of ", .icon = &Resources::CloudLogout,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ItemhubDashboardCmdDef::kRow = {
    .key = L"ItemhubDashboardCommand", .title = "Items in the Browser", .icon = &Resources::CloudManage,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

ItemhubSignInCmdDef::Asker& installedAsker()
{
    static ItemhubSignInCmdDef::Asker asker;
    return asker;
}

Info named(const CommandRow& row)
{
    Info info = makeInfo(row);
    info.changeAppearance(info.name() + Vs::ItemhubUtilities::getItemhub_TM(), info.icon());
    return info;
}

} // namespace

Info* ItemhubSignInCmdDef::info()
{
    static Info record = named(kRow);
    return &record;
}

ItemhubSignInCmdDef::ItemhubSignInCmdDef() : ItemhubDefinition(info()) {}

void ItemhubSignInCmdDef::createCommandDef()
{
    static ItemhubSignInCmdDef definition;
}

void ItemhubSignInCmdDef::asker(Asker asker)
{
    installedAsker() = std::move(asker);
}

bool ItemhubSignInCmdDef::onIsApplicable(CommandContext*) const
{
    return itemhubIsEnabled() && !isSignedInToItemhub();
}

ItemhubSignInCmd::ItemhubSignInCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ItemhubSignInCmd::onExecute(Vs::Status& status)
{
    if (installedAsker() && somebodyIsThere())
        installedAsker()();
    else
        status.addError(localized("ItemhubNobodySignsIn",
                                  "Nobody is there to sign in. A script does it by Itemhub.SignIn."));
}

Info* ItemhubSignOutCmdDef::info()
{
    static Info record = named(kRow);
    return &record;
}

ItemhubSignOutCmdDef::ItemhubSignOutCmdDef() : ItemhubDefinition(info()) {}

void ItemhubSignOutCmdDef::createCommandDef()
{
    static ItemhubSignOutCmdDef definition;
}

bool ItemhubSignOutCmdDef::onIsApplicable(CommandContext*) const
{
    return itemhubIsEnabled() && isSignedInToItemhub();
}

ItemhubSignOutCmd::ItemhubSignOutCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ItemhubSignOutCmd::onExecute(Vs::Status&)
{
    Vs::ItemhubUtilities::get()->signOut();
}

void ItemhubDashboardCmdDef::createCommandDef()
{
    static ItemhubDashboardCmdDef definition;
}

ItemhubDashboardCmd::ItemhubDashboardCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ItemhubDashboardCmd::onExecute(Vs::Status& status)
{
    if (!itemhubSession()) {
        Vs::ItemhubUtilities::get()->fireErrorMessage(
            localized("ItemhubNobody", "Nobody is signed in to the lifecycle service."));
        return;
    }
    withItemhubErrors([&] {
        const std::string address = Vs::ItemhubUtilities::get()->dashboardAddress();
        if (!address.empty())
            openAddress(Vs::Strings::widen(address), AddressOf::Anybody, status);
    });
}

} // namespace Vu::Commands
