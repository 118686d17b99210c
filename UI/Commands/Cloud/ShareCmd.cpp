#include "UI/Commands/Cloud/ShareCmd.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Commands/Cloud/CloudSessionCmds.h"
#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ShareCmdDef::kRow = {
    .key = L"ShareCommand", .title = "Sign In", .icon = &Resources::Share,
    .groups = {&CommandGroup::BaseGroup}};
// clang-format on

namespace {

void run(const Info* command, const CommandContext& context, Vs::Status& status)
{
    if (CommandDefinition* found = CommandDefinitionMgr::get()->findCommandDefinitionById(command->key()))
        status.merge(found->executeCommand(context));
}

} // namespace

ShareCmdDef::ShareCmdDef()
{
    m_subscriptions.add(Vs::CloudEventSource::get(), this);
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
    ShareCmdDef::cloudSessionChanged(nullptr);
}

void ShareCmdDef::user(const std::wstring& name)
{
    info()->changeAppearance(name.empty() ? localized("ShareCommand", "Sign In") : name,
                             name.empty() ? Resources::Share() : Resources::ShareLoggedIn());
    inputControl()->info(info());
}

void ShareCmdDef::cloudSessionChanged(Vs::CloudEvent*)
{
    std::wstring name;
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    if (!auth->isLoggedIn() || !auth->userName(name))
        name = isSignedInToItemhub() ? Vs::ItemhubUtilities::get()->accountName() : std::wstring();
    user(name);
}

void ShareCmdDef::sessionChanged(Vs::ItemhubEvent*)
{
    cloudSessionChanged(nullptr);
}

ShareCmd::ShareCmd(ShareCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

namespace {

/// What can be signed in to or out of: the drive and the lifecycle service.
void offerBoth(const CommandContext& context, Vs::Status& status)
{
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    const Info* drive = auth->isLoggedIn() ? CloudLogoutCmdDef::info() : CloudLoginCmdDef::info();
    const Info* service = isSignedInToItemhub() ? ItemhubSignOutCmdDef::info() : ItemhubSignInCmdDef::info();
    MessageBox box(localized("ShareBoth", "What do you want to do?"));
    box.icon(kQuestionIcon);
    box.addButton(drive->name());
    box.addButton(service->name());
    box.addButton(kCancelButton, true);
    enum Answer { kDrive = 0, kService = 1 };
    switch (box.show()) {
    case kDrive:
        return run(drive, context, status);
    case kService:
        return run(service, context, status);
    default:
        return;
    }
}

} // namespace

void ShareCmd::onExecute(Vs::Status& status)
{
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    if (auth->cloudDisabled() && itemhubIsEnabled()) {
        run(isSignedInToItemhub() ? ItemhubSignOutCmdDef::info() : ItemhubSignInCmdDef::info(),
            *commandContext(), status);
        return;
    }
    if (auth->cloudDisabled()) {
        MessageBox::information(
            localized("ShareNothing", "There is nothing to sign in to: the cloud drive is switched off."));
        return;
    }
    if (itemhubIsEnabled() && MessageBox::canAsk() && !auth->isLoggedIn()) {
        offerBoth(*commandContext(), status);
        return;
    }
    if (!auth->isLoggedIn()) {
        run(CloudLoginCmdDef::info(), *commandContext(), status);
        return;
    }
    std::wstring name;
    std::string address;
    auth->userName(name);
    auth->serverUrl(address);
    MessageBox box(localizedFormat("ShareSignedIn", "You are signed in to %1% as %2%.",
                                   Vs::Strings::widen(address), name));
    box.icon(kInformationIcon);
    box.addButton(CloudManageCmdDef::info()->name());
    box.addButton(CloudLogoutCmdDef::info()->name());
    const Info* service = isSignedInToItemhub() ? ItemhubSignOutCmdDef::info() : ItemhubSignInCmdDef::info();
    if (itemhubIsEnabled())
        box.addButton(service->name());
    box.addButton(kCancelButton, true);
    enum Answer { kManage = 0, kLogOut = 1, kService = 2 };
    const int answer = box.show();
    if (answer == kManage)
        run(CloudManageCmdDef::info(), *commandContext(), status);
    else if (answer == kLogOut)
        run(CloudLogoutCmdDef::info(), *commandContext(), status);
    else if (answer == kService && itemhubIsEnabled())
        run(service, *commandContext(), status);
}

} // namespace Vu::Commands
