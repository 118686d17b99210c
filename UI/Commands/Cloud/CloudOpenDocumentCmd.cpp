#include "UI/Commands/Cloud/CloudOpenDocumentCmd.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/WelcomeScreen.h"
#include "UI/Commands/Cloud/CloudDialog.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Vs::CloudErrorState;
using Vs::MeshportAuth;
using Vs::SkyvaultUtilities;

// clang-format off
constinit const CommandRow CloudOpenDocumentCmdDef::kRow = {
    .key = L"CloudOpenDocumentCommand", .title = "Open from ", .icon = &Resources::CloudOpen,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"Path"}};
// clang-format on

namespace {

/// Made at the start, so that it is listed before the first run.
Vs::Metrics::TimeMetric* const theMetric = timeMetric("CloudOpenDocument");

bool wentWell(CloudErrorState state)
{
    if (state == CloudErrorState::Success)
        return true;
    MessageBox::error(SkyvaultUtilities::getErrorString(state));
    return false;
}

bool fetch(Vs::SkyvaultNodeData& node, std::wstring& path)
{
    if (!Vs::CloudCacheManager::getInstance()->downloadRequired(&node))
        return true;
    boost::filesystem::path file = path;
    const bool fetched =
        wentWell(SkyvaultUtilities::DownloadToCacheById(MeshportAuth::globalInstance(), node, file, true));
    path = file.wstring();
    return fetched;
}

} // namespace

CloudOpenDocumentCmdDef::CloudOpenDocumentCmdDef()
{
    ReplacingDocument::byCommand(info()->key());
}

Vs::Metrics::TimeMetric* CloudOpenDocumentCmd::metric()
{
    return theMetric;
}

void CloudOpenDocumentCmd::onExecute(Vs::Status& status)
{
    static_cast<void>(openLogic(status));
    if (Vs::DocumentMgr::get() && Vs::DocumentMgr::get()->documents() == 0)
        WelcomeScreen::get()->show();
}

bool CloudOpenDocumentCmd::choose(Vs::SkyvaultNodeData& node, std::wstring& path, Vs::Status& status)
{
    const MeshportAuth* auth = MeshportAuth::globalInstance();
    path = commandContext()->argumentAsString(CommandContext::pathArgumentName());
    if (!path.empty())
        return wentWell(
            SkyvaultUtilities::GetFileNode(auth, SkyvaultUtilities::currentCachePath(auth), path, node));
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    const std::wstring filter = OpenDocumentCmd::getFilterValues(Vs::DocumentMgr::get(), &recognizer);
    if (!CloudDialog::SelectCloudDocument(node, filter, false)) {
        CloudDialog::tellMissing(status);
        return false;
    }
    path = node.cachePath(auth).wstring();
    return true;
}

bool CloudOpenDocumentCmd::openLogic(Vs::Status& status)
{
    MeshportAuth::globalInstance()->forgetRefusal();
    if (!cloudLogin())
        return wentWell(CloudErrorState::LoginFailed);
    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    Vs::SkyvaultNodeData node;
    std::wstring path;
    if (!manager || !choose(node, path, status) || !fetch(node, path))
        return false;
    if (Vs::Document* open = manager->document(path)) {
        open->setCloudId(node.id());
        return true;
    }
    OpenDocumentCmd::OpenSingleFile(path, status, node.id());
    if (!status.isOk())
        return false;
    RecentDocumentMgr::get()->add(path, true);
    if (Vs::TranscriptMgr::get()->recording())
        commandContext()->addArgument(CommandContext::pathArgumentName(), path);
    return true;
}

} // namespace Vu::Commands
