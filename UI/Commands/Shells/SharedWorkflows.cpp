#include "UI/Commands/Shells/SharedWorkflows.h"

#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"

namespace Vu::Commands {

AssetShell* SharedWorkflows::activeAssetShell()
{
    Workspace* workspace = WorkspaceMgr::activeWorkspace();
    return workspace ? findOrMakeShell<AssetShell>(workspace->shellManager()) : nullptr;
}

void SharedWorkflows::setCurrentAssetSessionForWorkspace(Workspace* workspace, AssetSession* session,
                                                         bool flagA, bool flagB)
{
    AssetShell* shell = workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
    if (!shell)
        return;
    if (session) {
        if (!shell->has(session))
            shell->add(session);
        shell->currentAssetSession(session, flagA, flagB);
    }
    workspace->shellManager()->activeShell(shell);
}

} // namespace Vu::Commands
