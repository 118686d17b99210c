#pragma once

#include "UI/Base/Workspace/Shell.h"

#include <memory>
#include <vector>

namespace Vu {

class Workspace;

/// The shells of one workspace, and which of them shows. Owns them.
class ShellMgr : public Vs::Implements<ShellMgr>
{
public:
    explicit ShellMgr(Workspace* workspace) : m_workspace(workspace) {}
    ~ShellMgr() override;

    Workspace* workspace() const { return m_workspace; }

    /// In the order in which they were added.
    const std::vector<Shell*>& shells() const { return m_shells; }
    /// Takes the shell over; it doesn't become active by that. Adding it again changes nothing.
    void add(Shell* shell);
    /// Deactivates the shell if need be, and deletes it.
    void remove(Shell* shell);

    /// Null before the first activation, and between `pop` and the next one.
    Shell* activeShell() const { return m_active; }
    /// Brings a shell to the top. Nothing happens if it is there, or if it isn't one of this manager's.
    void activeShell(Shell* shell);
    /// Takes the active shell off the top, deactivating it; the one below isn't activated by that.
    void pop();
    /// Asks WorkspaceEventSource for the workspace's default shell and activates it.
    void activateDefaultShell();

private:
    bool owns(const Shell* shell) const;

    Workspace* m_workspace;
    std::vector<Shell*> m_shells;
    Shell* m_active = nullptr;
};

} // namespace Vu
