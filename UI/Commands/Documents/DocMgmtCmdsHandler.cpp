#include "UI/Commands/Documents/DocMgmtCmdsHandler.h"

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <tuple>

namespace Vu::Commands {
namespace {

const DocMgmtCmdsHandler theHandler;

constexpr int kClosingAccessPoint = 11;
constexpr const wchar_t* kSaveDocumentCommand = L"SaveDocumentCommand";
constexpr const wchar_t* kCloudSaveCommand = L"CloudSaveCommand";

/// The buttons in the order in which they are added, which is what show() answers with.
enum Answer { kSave = 0, kDontSave = 1, kCancel = 2 };

/// The user should see the document being asked about.
void bringUp(Vs::Document* document)
{
    SessionMgr* sessions = SessionMgr::get();
    Workspace* workspace = WorkspaceMgr::activeWorkspace();
    if (AssetSession* active =
            document->activeAsset() ? sessions->assetSession(document->activeAsset()) : nullptr) {
        SharedWorkflows::setCurrentAssetSessionForWorkspace(workspace, active, true, true);
        return;
    }
    DocumentSession* wanted = sessions->documentSession(document);
    for (AssetSession* session : sessions->assetSessions())
        if (wanted && session->documentSession() == wanted) {
            SharedWorkflows::setCurrentAssetSessionForWorkspace(workspace, session, true, true);
            return;
        }
}

int ask(Vs::Document* document)
{
    MessageBox box(localizedFormat("ClosingDirtyDocument", "Save changes to %1%?", document->displayName()));
    box.icon(kQuestionIcon);
    box.addButton(localized("SaveDirtyDocument", "Save"), true);
    box.addButton(localized("DontSaveDirtyDocument", "Don't Save"));
    box.addButton(kCancelButton);
    return box.show();
}

void save(Vs::Document* document)
{
    // The ordinary command refuses documents of the cloud drive.
    const bool isCloud = !Vs::MeshportAuth::globalInstance()->cloudDisabled() &&
                         Vs::PathInfo::isPathInCloudCache(document->path());
    CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(
        isCloud ? kCloudSaveCommand : kSaveDocumentCommand);
    if (!definition)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CloseDocumentCmdDef::documentSessionArgumentName(),
                        SessionMgr::get()->documentSession(document));
    context.accessPoint(kClosingAccessPoint);
    // What fails has been shown, and the document is still dirty.
    std::ignore = definition->executeCommand(context);
}

} // namespace

Vs::EDocMgmtOpCode DocMgmtCmdsHandler::onClosingDirtyDocuments(const Documents& documents)
{
    for (Vs::Document* document : documents) {
        bringUp(document);
        switch (ask(document)) {
        case kSave:
            save(document);
            if (document->isDirty(false))
                return Vs::eDocMgmtStop;
            break;
        case kDontSave:
            Vs::AutoSaveController::get()->declined(document);
            break;
        default:
            return Vs::eDocMgmtStop;
        }
    }
    return Vs::eDocMgmtGoOn;
}

} // namespace Vu::Commands
