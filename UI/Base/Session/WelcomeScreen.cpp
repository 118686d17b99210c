#include "UI/Base/Session/WelcomeScreen.h"

#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <algorithm>

namespace Vu {
namespace {

/// Null without a workspace.
ShellMgr* shells()
{
    Workspace* workspace = WorkspaceMgr::activeWorkspace();
    return workspace ? workspace->shellManager() : nullptr;
}

Shell* homeOf(const ShellMgr& manager)
{
    WorkspaceShellEvent event(manager.workspace(), nullptr);
    WorkspaceEventSource::get()->fireWorkspaceDefaultShell(&event);
    return event.shell();
}

} // namespace

WelcomeScreen* WelcomeScreen::get()
{
    static auto* const screen = new WelcomeScreen;
    return screen;
}

bool WelcomeScreen::dialogExists()
{
    const ShellMgr* manager = shells();
    return manager && manager->activeShell() && manager->activeShell() == homeOf(*manager);
}

void WelcomeScreen::show()
{
    if (ShellMgr* manager = shells())
        manager->activateDefaultShell();
}

void WelcomeScreen::close()
{
    ShellMgr* manager = shells();
    if (!manager || !dialogExists() || SessionMgr::get()->openDocuments().empty())
        return;
    const std::vector<Shell*>& all = manager->shells();
    const auto below =
        std::find_if(all.rbegin(), all.rend(), [&](Shell* shell) { return shell != manager->activeShell(); });
    if (below != all.rend())
        manager->activeShell(*below);
}

} // namespace Vu
