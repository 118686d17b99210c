#pragma once

namespace Vu {
class AssetSession;
class Workspace;
} // namespace Vu

namespace Vu::Commands {

class AssetShell;

/// For code that has to reach the active asset shell.
class SharedWorkflows
{
public:
    /// The asset shell of the active workspace, made if need be; null without a workspace.
    static AssetShell* activeAssetShell();

    /// Makes the session current in the workspace's asset shell, which it enters if need be, and that shell
    /// the active one. Without a session only the latter. Does nothing without an asset shell. The flags go
    /// to AssetShell::currentAssetSession.
    static void setCurrentAssetSessionForWorkspace(Workspace* workspace, AssetSession* session, bool flagA,
                                                   bool flagB);
};

} // namespace Vu::Commands
