#pragma once

#include "UI/Base/Workspace/Workspace.h"

#include <memory>
#include <vector>

namespace Vu {

/// All workspaces.
class WorkspaceMgr : public Vs::Implements<WorkspaceMgr>
{
public:
    static WorkspaceMgr* get();

    /// The workspace whose window was last active; null before the first one is made.
    static Workspace* activeWorkspace();
    static void activeWorkspace(Workspace* workspace);

    const std::vector<Workspace*>& workspaces() const { return m_workspaces; }

    /// A new workspace, which becomes the active one and shows its default shell. Its window comes up with
    /// WorkspaceWindow::show().
    Workspace* create();
    /// Deletes the workspace with its shells and its window.
    void close(Workspace* workspace);
    /// Closes all; before Qt's application object goes.
    void closeAll();

private:
    WorkspaceMgr() = default;

    std::vector<std::unique_ptr<Workspace>> m_owned;
    std::vector<Workspace*> m_workspaces;
    Workspace* m_active = nullptr;
};

} // namespace Vu
