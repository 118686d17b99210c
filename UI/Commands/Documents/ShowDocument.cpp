#include "UI/Commands/Documents/ShowDocument.h"

#include "Server/DataModel/Document.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

namespace Vu::Commands {

bool showDocument(Vs::Document* document, AllSessions all)
{
    AssetShell* shell = SharedWorkflows::activeAssetShell();
    if (!shell)
        return false;
    SessionMgr* sessions = SessionMgr::get();
    if (all == AllSessions::Yes)
        for (unsigned i = 0; i < document->assets(); ++i)
            if (AssetSession* session = sessions->assetSession(document->asset(i)))
                shell->add(session);
    AssetSession* active =
        document->activeAsset() ? sessions->assetSession(document->activeAsset()) : nullptr;
    if (!active)
        return false;
    shell->add(active);
    shell->currentAssetSession(active, true, true);
    shell->shellManager()->activeShell(shell);
    return true;
}

void restoreWindow()
{
    if (WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow())
        if (window->minimized())
            window->activateWindow();
}

} // namespace Vu::Commands
