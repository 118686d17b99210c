#include "UI/Base/Workspace/ShellMgr.h"

#include "Server/Base/Require.h"
#include "UI/Base/Workspace/ShellEvents.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

void tellShell(Shell* shell, void (ShellEventSource::*fire)(ShellEvent*), Vs::Timing timing)
{
    if (!shell)
        return;
    ShellEvent event(shell, timing);
    (ShellEventSource::get()->*fire)(&event);
}

} // namespace

ShellMgr::~ShellMgr()
{
    pop();
    for (Shell* shell : m_shells)
        shell->onPreDelete();
    while (!m_shells.empty()) {
        const std::unique_ptr<Shell> last(m_shells.back());
        m_shells.pop_back();
    }
}

bool ShellMgr::owns(const Shell* shell) const
{
    return std::find(m_shells.begin(), m_shells.end(), shell) != m_shells.end();
}

void ShellMgr::add(Shell* shell)
{
    Vs::require(!shell || shell->shellManager() == this,
                "a shell is added to the manager that it was made for");
    if (shell && !owns(shell))
        m_shells.push_back(shell);
}

void ShellMgr::remove(Shell* shell)
{
    if (!owns(shell))
        return;
    if (shell == m_active)
        pop();
    shell->onPreDelete();
    std::erase(m_shells, shell);
    delete shell;
}

void ShellMgr::activeShell(Shell* next)
{
    if (next == m_active || !owns(next))
        return;
    Shell* previous = m_active;
    next->onPreActivate(previous);
    if (previous)
        previous->onPreDeactivate(next);
    m_active = next;
    if (previous)
        previous->onPostDeactivate();
    tellShell(previous, &ShellEventSource::fireShellDeactivated, Vs::Timing::After);
    next->onPostActivate();
    tellShell(next, &ShellEventSource::fireShellActivated, Vs::Timing::After);
    tellShell(next, &ShellEventSource::fireShellActivated, Vs::Timing::Notification);
    WorkspaceShellEvent event(m_workspace, m_active);
    WorkspaceEventSource::get()->fireWorkspaceShellActivated(&event);
}

void ShellMgr::pop()
{
    if (!m_active)
        return;
    m_active->onPreDeactivate(nullptr);
    Shell* left = std::exchange(m_active, nullptr);
    left->onPostDeactivate();
    tellShell(left, &ShellEventSource::fireShellDeactivated, Vs::Timing::After);
}

void ShellMgr::activateDefaultShell()
{
    WorkspaceShellEvent event(m_workspace, nullptr);
    WorkspaceEventSource::get()->fireWorkspaceDefaultShell(&event);
    activeShell(event.shell());
}

} // namespace Vu
