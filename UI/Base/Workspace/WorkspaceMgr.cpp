#include "UI/Base/Workspace/WorkspaceMgr.h"

#include "Server/Base/Require.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>

namespace Vu {

WorkspaceMgr* WorkspaceMgr::get()
{
    static auto* const manager = new WorkspaceMgr;
    return manager;
}

Workspace* WorkspaceMgr::activeWorkspace()
{
    return get()->m_active;
}

void WorkspaceMgr::activeWorkspace(Workspace* workspace)
{
    Vs::assertMainThread();
    WorkspaceMgr* manager = get();
    if (workspace == manager->m_active)
        return;
    const auto& all = manager->m_workspaces;
    Vs::require(!workspace || std::find(all.begin(), all.end(), workspace) != all.end(),
                "a workspace that becomes active is open");
    if (manager->m_active)
        manager->m_active->countUp();
    manager->m_active = workspace;
}

Workspace* WorkspaceMgr::create()
{
    Vs::assertMainThread();
    Workspace* made = m_owned.emplace_back(std::make_unique<Workspace>()).get();
    m_workspaces.push_back(made);
    activeWorkspace(made);
    WorkspaceEvent event(made);
    WorkspaceEventSource::get()->fireWorkspaceCreated(&event);
    made->shellManager()->activateDefaultShell();
    return made;
}

void WorkspaceMgr::close(Workspace* workspace)
{
    Vs::assertMainThread();
    if (std::find(m_workspaces.begin(), m_workspaces.end(), workspace) == m_workspaces.end())
        return;
    WorkspaceEvent event(workspace, Vs::Timing::Before);
    WorkspaceEventSource::get()->fireWorkspaceClosed(&event);
    workspace->shellManager()->pop();
    std::erase(m_workspaces, workspace);
    if (workspace == m_active)
        m_active = m_workspaces.empty() ? nullptr : m_workspaces.back();
    std::erase_if(m_owned, [&](const auto& owned) { return owned.get() == workspace; });
}

void WorkspaceMgr::closeAll()
{
    while (!m_workspaces.empty())
        close(m_workspaces.back());
}

} // namespace Vu
