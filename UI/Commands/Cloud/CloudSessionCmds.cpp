#include "UI/Commands/Cloud/CloudSessionCmds.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Address.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/Cloud/ShareCmd.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Vs::CloudErrorState;
using Vs::MeshportAuth;
using Vs::SkyvaultUtilities;

// clang-format off
constinit const CommandRow CloudCmdDef::kRow = {
    .key = L"CloudCommand", .title = "Cloud Commands", .icon = &Resources::Cloud,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow CloudLoginCmdDef::kRow = {
    .key = L"CloudLoginCommand", .title = "Sign In to ", .icon = &Resources::CloudLogin,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"CLOUD_LOGIN_USER", L"CLOUD_LOGIN_PASSWORD"}};

constinit const CommandRow CloudLogoutCmdDef::kRow = {
    .key = L"CloudLogoutCommand", .title = "Sign Out of ", .icon = &Resources::CloudLogout,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow CloudManageCmdDef::kRow = {
    .key = L"CloudManageCommand", .title = "Manage ", .icon = &Resources::CloudManage,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow CloudListFilesCmdDef::kRow = {
    .key = L"CloudListFilesCommand", .title = "Skyvault List Files", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}};

constinit const CommandRow CloudUploadCmdDef::kRow = {
    .key = L"CloudUploadCommand", .title = "Skyvault Test Command", .icon = &Resources::CloudTest,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"DocumentSession"}};
// clang-format on

namespace {

/// Made at the start, so that they are listed before the first run.
Vs::Metrics::TimeMetric* const theMetrics[] = {timeMetric("Cloud"),       timeMetric("CloudListFiles"),
                                               timeMetric("CloudLogin"),  timeMetric("CloudLogout"),
                                               timeMetric("CloudManage"), timeMetric("CloudUpload")};
enum Metric { kCloud, kListFiles, kLogin, kLogout, kManage, kUpload };

/// Whether an older version of the program wrote the file.
bool isMigrated(const Vs::Document& document)
{
    const unsigned version = document.lastSavedSoftwareVersion();
    return version != 0 && version < Vs::SoftwareVersion::currentVersionNumber();
}

CloudLogoutCmdDef* logoutDefinition()
{
    CommandDefinition* found =
        CommandDefinitionMgr::get()->findCommandDefinitionById(CloudLogoutCmdDef::info()->key());
    return Vs::cast<CloudLogoutCmdDef>(found);
}

std::wstring errorText(CloudErrorState state)
{
    return SkyvaultUtilities::getErrorString(state);
}

} // namespace

Vs::Metrics::TimeMetric* CloudCmd::metric()
{
    return theMetrics[kCloud];
}

const Vs::UniqueString* CloudLoginCmdDef::userArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("CLOUD_LOGIN_USER", true);
    return name;
}

const Vs::UniqueString* CloudLoginCmdDef::passwordArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("CLOUD_LOGIN_PASSWORD", true);
    return name;
}

bool CloudLoginCmdDef::onIsApplicable(CommandContext*) const
{
    return cloudIsEnabled() && !MeshportAuth::globalInstance()->isLoggedIn();
}

Vs::Metrics::TimeMetric* CloudLoginCmd::metric()
{
    return theMetrics[kLogin];
}

void CloudLoginCmd::onExecute(Vs::Status&)
{
    const std::wstring user = commandContext()->argumentAsString(CloudLoginCmdDef::userArgumentName());
    const std::wstring password =
        commandContext()->argumentAsString(CloudLoginCmdDef::passwordArgumentName());
    if (!user.empty() && !password.empty()) {
        // It must not appear in a recording.
        commandContext()->addArgument(CloudLoginCmdDef::passwordArgumentName(), L"***");
        return;
    }
    MeshportAuth* auth = MeshportAuth::globalInstance();
    auth->forgetRefusal();
    if (!cloudLogin())
        return;
    std::wstring name;
    if (CloudLogoutCmdDef* logout = logoutDefinition(); logout && auth->userName(name))
        logout->updateInfo(name);
}

bool CloudLogoutCmdDef::onIsApplicable(CommandContext*) const
{
    return cloudIsEnabled() && MeshportAuth::globalInstance()->isLoggedIn();
}

void CloudLogoutCmdDef::updateInfo(const std::wstring& user)
{
    if (auto* share = Vs::cast<ShareCmdDef>(
            CommandDefinitionMgr::get()->findCommandDefinitionById(ShareCmdDef::info()->key())))
        share->user(user);
    if (user.empty())
        return;
    info()->changeAppearance(localized("CloudLogoutCommandLog", "Log off ") + user, Resources::CloudLogout());
    inputControl()->info(info());
}

Vs::Metrics::TimeMetric* CloudLogoutCmd::metric()
{
    return theMetrics[kLogout];
}

void CloudLogoutCmd::onExecute(Vs::Status&)
{
    if (!MeshportAuth::globalInstance()->logout()) {
        MessageBox::error(errorText(CloudErrorState::LogoutFailed));
        return;
    }
    if (auto* definition = Vs::cast<CloudLogoutCmdDef>(commandDefinition()))
        definition->updateInfo(L"");
}

Vs::Metrics::TimeMetric* CloudManageCmd::metric()
{
    return theMetrics[kManage];
}

void CloudManageCmd::onExecute(Vs::Status& status)
{
    MeshportAuth* auth = MeshportAuth::globalInstance();
    auth->forgetRefusal();
    static_cast<void>(cloudLogin());
    const std::wstring url = Vs::Strings::widen(auth->getHalvaneUrl());
    std::string signedUrl;
    const bool isSigned = auth->authenticatedUrl(url, signedUrl, true);
    if (!isSigned && url.empty())
        return;
    openAddress(isSigned ? Vs::Strings::widen(signedUrl) : url, AddressOf::Anybody, status);
}

Vs::Metrics::TimeMetric* CloudListFilesCmd::metric()
{
    return theMetrics[kListFiles];
}

void CloudListFilesCmd::onExecute(Vs::Status&)
{
    std::vector<Vs::SkyvaultNodeData> activities;
    SkyvaultUtilities::GetActivities(MeshportAuth::globalInstance(), {}, {}, {}, 0, 0, activities);
}

Vs::Metrics::TimeMetric* CloudUploadCmd::metric()
{
    return theMetrics[kUpload];
}

void CloudUploadCmd::onExecute(Vs::Status& status)
{
    DocumentSession* session = documentSessionOf(*commandContext());
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document)
        return;
    MeshportAuth::globalInstance()->forgetRefusal();
    if (!cloudLogin()) {
        MessageBox::error(errorText(CloudErrorState::LoginFailed));
        return;
    }
    if (!document->isOnDisk()) {
        status.addError(errorText(CloudErrorState::NotOnDisk));
        return;
    }
    if (document->isDirty(false) || isMigrated(*document))
        document->save(status);
    if (status.isError())
        return;
    // What an upload would need; the test ends before one.
    const Vs::SkyvaultNodeData parent, result;
}

} // namespace Vu::Commands
