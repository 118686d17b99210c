#include "UI/Commands/Cloud/CloudSaveAsCmd.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/Cloud/CloudDialog.h"
#include "UI/Commands/Cloud/CloudSaveCmd.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/SamePath.h"
#include "UI/Commands/WaitCursor.h"

namespace Vu::Commands {

using Vs::CloudErrorState;
using Vs::SkyvaultNodeData;
namespace fs = boost::filesystem;

// clang-format off
constinit const CommandRow CloudSaveAsCmdDef::kRow = {
    .key = L"CloudSaveAsCommand", .title = "Save As in ", .icon = &Resources::CloudSave,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"DocumentSession", L"Path"}};
// clang-format on

namespace {

/// Made at the start, so that it is listed before the first run.
Vs::Metrics::TimeMetric* const theMetric = timeMetric("CloudSaveAs");

/// Takes the target from the argument or from the person. False if there is none.
bool choose(const CommandContext& context, const Vs::Document& document, fs::path& target,
            SkyvaultNodeData& node, bool& ensureCloud, Vs::Status& status)
{
    const std::wstring given = context.argumentAsString(CommandContext::pathArgumentName());
    if (!given.empty()) {
        ensureCloud = Vs::PathInfo::isPathInCloudCache(given);
        if (!ensureCloud)
            status.addError(Vs::SkyvaultUtilities::getErrorString(CloudErrorState::OutsideCache));
        target = given;
        return ensureCloud;
    }
    if (!Vs::DocumentMgr::get())
        return false;
    std::wstring name = document.displayName();
    std::wstring extension = document.documentType()->extension();
    if (!CloudDialog::SelectSaveAsFileName(node, name, cloudFilter(document), extension)) {
        CloudDialog::tellMissing(status);
        return false;
    }
    target = node.cachePath(Vs::MeshportAuth::globalInstance()) / name;
    return true;
}

bool mayWrite(const Vs::Document& document, const fs::path& target, const SkyvaultNodeData& node)
{
    if (Vs::TranscriptMgr::get()->replaying())
        return true;
    const bool own = document.isOnDisk() && isSamePath(document.path(), target.wstring());
    if (!own && !node.findChild(target.filename().string()))
        return true;
    return CloudSaveCmd::mayReplace(target.filename().wstring());
}

} // namespace

bool CloudSaveAsCmdDef::onIsApplicable(CommandContext* context) const
{
    return cloudIsEnabled() && hasAssetSession(context);
}

Vs::Metrics::TimeMetric* CloudSaveAsCmd::metric()
{
    return theMetric;
}

void CloudSaveAsCmd::onExecute(Vs::Status& status)
{
    DocumentSession* session = documentSessionOf(*commandContext());
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document || !CloudSaveCmd::loginForSave(commandContext(), document))
        return;
    fs::path target;
    SkyvaultNodeData node;
    bool ensureCloud = false;
    if (!choose(*commandContext(), *document, target, node, ensureCloud, status) ||
        !mayWrite(*document, target, node) ||
        CloudSaveCmd::Ensure(ensureCloud, true, target, node) != CloudErrorState::Success)
        return;
    if (!document->isOnDisk())
        session->firstSave(true);
    {
        const WaitCursor wait;
        document->saveAs(target.wstring(), status);
    }
    if (status.isOk())
        CloudSaveCmd::uploadSaved(target, node, commandContext(), document);
}

} // namespace Vu::Commands
