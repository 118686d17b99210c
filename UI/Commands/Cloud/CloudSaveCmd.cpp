#include "UI/Commands/Cloud/CloudSaveCmd.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Commands/Cloud/CloudDialog.h"
#include "UI/Commands/Cloud/CloudDocuments.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/SamePath.h"
#include "UI/Commands/WaitCursor.h"

#include <QStandardPaths>

#include <tuple>

namespace Vu::Commands {

using Vs::CloudErrorState;
using Vs::MeshportAuth;
using Vs::SkyvaultNodeData;
using Vs::SkyvaultUtilities;
namespace fs = boost::filesystem;

// clang-format off
constinit const CommandRow CloudSaveCmdDef::kRow = {
    .key = L"CloudSaveCommand", .title = "Save to ", .icon = &Resources::CloudSave,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"DocumentSession", L"Path"}};

constinit const CommandRow CloudSaveQATCmdDef::kRow = {
    .key = L"CloudSaveQATCommand", .title = "Save to ", .icon = &Resources::CloudSave,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"DocumentSession", L"Path"}};
// clang-format on

namespace {

/// Made at the start, so that they are listed before the first run.
Vs::Metrics::TimeMetric* const theSaveMetric = timeMetric("CloudSave");
Vs::Metrics::TimeMetric* const theQATMetric = timeMetric("CloudSaveQAT");

constexpr int kLocalCopyAccessPoint = 11;
constexpr const wchar_t* kSaveAsCommand = L"SaveDocumentAsCommand";

std::wstring errorText(CloudErrorState state)
{
    return SkyvaultUtilities::getErrorString(state);
}

/// Where the user keeps documents.
fs::path userDataDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdWString();
}

/// Where a document is to be written, and what has to be there first.
struct Target
{
    fs::path path;
    SkyvaultNodeData node;
    bool saveAs = false;
    bool ensureCloud = false;
    bool checkLocal = false;
};

bool chooseGiven(const std::wstring& given, const Vs::Document& document, Target& target, Vs::Status& status)
{
    if (!Vs::PathInfo::isPathInCloudCache(given)) {
        status.addError(errorText(CloudErrorState::OutsideCache));
        return false;
    }
    // A path that differs only in the kind of slash counts as the document's own file.
    const bool isOwn = document.isOnDisk() && isSamePath(document.path(), given);
    target.path = isOwn ? document.path() : given;
    target.ensureCloud = target.checkLocal = true;
    target.saveAs = document.isOnDisk() && !isOwn;
    return true;
}

bool chooseFolder(const Vs::Document& document, Target& target, Vs::Status& status)
{
    if (!CloudDialog::SelectFolder(target.node)) {
        CloudDialog::tellMissing(status);
        return false;
    }
    target.path =
        target.node.cachePath(MeshportAuth::globalInstance()) / fs::path(document.path()).filename();
    target.saveAs = target.checkLocal = true;
    return true;
}

bool chooseName(const Vs::Document& document, Target& target, Vs::Status& status)
{
    std::wstring name = document.displayName();
    std::wstring extension = document.documentType()->extension();
    if (!CloudDialog::SelectSaveAsFileName(target.node, name, cloudFilter(document), extension)) {
        CloudDialog::tellMissing(status);
        return false;
    }
    target.path = target.node.cachePath(MeshportAuth::globalInstance()) / name;
    target.checkLocal = true;
    return !target.node.findChild(Vs::Strings::narrow(name)) || CloudSaveCmd::mayReplace(name);
}

/// The first of the situations that applies.
bool choose(const std::wstring& given, const Vs::Document& document, Target& target, Vs::Status& status)
{
    if (!given.empty())
        return chooseGiven(given, document, target, status);
    if (document.isOnDisk() && Vs::PathInfo::isPathInCloudCache(document.path())) {
        target.path = document.path();
        target.ensureCloud = true;
        return true;
    }
    if (document.isOnDisk())
        return chooseFolder(document, target, status);
    return Vs::DocumentMgr::get() && chooseName(document, target, status);
}

/// Whether the file already has all of the document, and the drive all of the file: a new file would have a
/// different time in it, and be sent for that alone.
bool isAsSaved(const Vs::Document& document)
{
    for (unsigned i = 0; i < document.assets(); ++i)
        if (document.asset(i)->isSmudge())
            return false;
    return !document.isDirty(false) &&
           Vs::CloudCacheManager::getInstance()->state(document.path()) == Vs::CloudFileState::Clean;
}

bool write(const Target& target, DocumentSession& session, Vs::Status& status)
{
    Vs::Document* document = session.document();
    const WaitCursor wait;
    if (target.saveAs)
        return document->saveAs(target.path.wstring(), status) && status.isOk();
    if (document->isOnDisk())
        return isAsSaved(*document) || (document->save(status) && status.isOk());
    // A document whose first save failed is as it was.
    const std::wstring name = document->displayName();
    session.firstSave(true);
    document->path(target.path.wstring());
    if (document->save(status) && status.isOk())
        return true;
    document->clearPath();
    document->displayName(name);
    return false;
}

} // namespace

bool CloudSaveCmdDef::onIsApplicable(CommandContext* context) const
{
    return cloudIsEnabled() && hasAssetSession(context);
}

bool CloudSaveQATCmdDef::onIsApplicable(CommandContext* context) const
{
    if (!cloudIsEnabled())
        return false;
    const AssetSession* session = context->assetSession();
    const DocumentSession* document = session ? session->documentSession() : nullptr;
    return document && document->document() && CloudDocuments::isOfDrive(*document->document());
}

bool CloudSaveQATCmdDef::onIsVisible(CommandContext* context) const
{
    return onIsApplicable(context);
}

Vs::Metrics::TimeMetric* CloudSaveCmd::metric()
{
    return theSaveMetric;
}

void CloudSaveCmd::onExecute(Vs::Status& status)
{
    staticExecute(status, commandContext());
}

Vs::Metrics::TimeMetric* CloudSaveQATCmd::metric()
{
    return theQATMetric;
}

void CloudSaveQATCmd::onExecute(Vs::Status& status)
{
    CloudSaveCmd::staticExecute(status, commandContext());
}

void CloudSaveCmd::staticExecute(Vs::Status& status, CommandContext* context)
{
    DocumentSession* session = documentSessionOf(*context);
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document || !loginForSave(context, document))
        return;
    Target target;
    const std::wstring given = context->argumentAsString(CommandContext::pathArgumentName());
    if (!choose(given, *document, target, status))
        return;
    // The drive's folder wasn't reached; nothing was begun.
    if (Ensure(target.ensureCloud, target.checkLocal, target.path, target.node) != CloudErrorState::Success)
        return;
    if (write(target, *session, status))
        uploadSaved(target.path, target.node, context, document);
}

bool CloudSaveCmd::loginForSave(CommandContext* context, Vs::Document* document)
{
    MeshportAuth::globalInstance()->forgetRefusal();
    if (cloudLogin())
        return true;
    const std::wstring text = errorText(CloudErrorState::LoginFailed);
    if (document->isOnDisk() && Vs::PathInfo::isPathInCloudCache(document->path()))
        CancelToLocalSaveOnError(text, document->path(), context, document);
    else
        ShowErrorDialog(text);
    return false;
}

void CloudSaveCmd::uploadSaved(const fs::path& target, SkyvaultNodeData& node, CommandContext* context,
                               Vs::Document* document)
{
    SkyvaultNodeData result;
    const CloudErrorState state = UploadDocument(document, &node, &result);
    if (state != CloudErrorState::Success) {
        CancelToLocalSaveOnError(errorText(state), document->path(), context, document);
        return;
    }
    RecentDocumentMgr::get()->add(target.wstring(), true);
    document->setCloudId(result.id());
    if (Vs::TranscriptMgr::get()->recording())
        context->addArgument(CommandContext::pathArgumentName(), target.wstring());
}

bool CloudSaveCmd::mayReplace(const std::wstring& name)
{
    MessageBox box(QTSkyvaultUtilities::sFileExists(name));
    box.addButton(kNoButton);
    box.addButton(kYesButton, true);
    box.icon(kWarningIcon);
    constexpr int kYesIndex = 1;
    return box.show() == kYesIndex;
}

CloudErrorState CloudSaveCmd::Ensure(bool ensureCloud, bool checkLocal, fs::path& target,
                                     SkyvaultNodeData& node)
{
    const fs::path parent = target.parent_path();
    if (checkLocal && !SkyvaultUtilities::checkLocalFolders(parent))
        return CloudErrorState::NoFolders;
    if (ensureCloud) {
        const MeshportAuth* auth = MeshportAuth::globalInstance();
        std::vector<fs::path> stack;
        if (!SkyvaultUtilities::getRelativeStack(SkyvaultUtilities::currentCachePath(auth), parent, stack) ||
            !SkyvaultUtilities::ensureCloudPath(auth, stack, node))
            return CloudErrorState::NoFolders;
    }
    return CloudErrorState::Success;
}

CloudErrorState CloudSaveCmd::UploadDocument(Vs::Document* document, SkyvaultNodeData* parent,
                                             SkyvaultNodeData* result)
{
    const MeshportAuth* auth = MeshportAuth::globalInstance();
    const fs::path path = document->path();
    const std::string name = path.filename().string();
    if (const SkyvaultNodeData* child = parent->findChild(name)) {
        result->assign(*child);
        return SkyvaultUtilities::SaveVersionToCloud(auth, child->id(), path, name, {}, *result);
    }
    return SkyvaultUtilities::SaveDocumentToCloud(auth, parent->id(), path, name, {}, *result);
}

void CloudSaveCmd::ShowErrorDialog(const std::wstring& text)
{
    if (Vs::TranscriptMgr::get()->replaying())
        return;
    MessageBox box(text);
    box.icon(kErrorIcon);
    box.show();
}

bool CloudSaveCmd::CancelToLocalSaveOnError(const std::wstring& error, const std::wstring& path,
                                            CommandContext* context, Vs::Document* document)
{
    if (Vs::TranscriptMgr::get()->replaying())
        return false;
    const std::wstring button = localized("CloudSaveLocalButtonText", "Save Local");
    const std::wstring fileName = fs::path(path).filename().wstring();
    MessageBox box(localizedFormat(
        "CloudOnSaveCloudError",
        "%1%\nSelect %2% to save %3% locally?  This will create a copy and changes will not be saved to %4%.",
        error, button, fileName, SkyvaultUtilities::getCloud_TM()));
    box.addButton(button);
    box.addButton(kOkButton, true);
    box.icon(kErrorIcon);
    if (box.show() != 0)
        return false;
    std::wstring name = (userDataDirectory() / fileName).wstring();
    if (!FileDialog::getTranscriptableFilenameForSaveAs(
            cloudFilter(*document), localized("SaveDocumentAsCaption", "Save Document As"), name, context))
        return false;
    // It is no longer a document of the drive.
    document->path(L"");
    CommandContext local = CommandContext::activeContext();
    local.addArgument(CommandContext::pathArgumentName(), name);
    local.executeImmediately(false);
    local.accessPoint(kLocalCopyAccessPoint);
    std::ignore = CommandMgr::getActiveCommandManager()->executeCommand(kSaveAsCommand, local);
    return true;
}

} // namespace Vu::Commands
