#pragma once

namespace Vu {
class AssetSession;
class Workspace;
} // namespace Vu

namespace Vu::Commands {

class AssetShell;

/// For code that needs the active asset shell.
class SharedWorkflows
{
public:
    /// The asset shell of the active workspace, created if needed; null without a workspace.
    static AssetShell* activeAssetShell();

    /// Makes the session current in the workspace's asset shell, entering it there if needed, and makes that
    /// shell the active one. Without a session it only does the latter. Does nothing without an asset shell.
    /// The flags are passed to AssetShell::currentAssetSession.
    static void setCurrentAssetSessionForWorkspace(Workspace* workspace, AssetSession* session, bool flagA,
                                                   bool flagB);
};

} // namespace Vu::Commands
