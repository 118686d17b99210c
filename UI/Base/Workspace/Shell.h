#pragma once

#include "Server/Base/Object.h"

namespace Vu {

class GraphicsView;
class ShellMgr;
class WorkspaceWindow;

/// What a workspace window shows. Owned by its ShellMgr.
class Shell : public Vs::Implements<Shell>
{
public:
    explicit Shell(ShellMgr* manager) : m_manager(manager) {}

    ShellMgr* shellManager() const { return m_manager; }
    WorkspaceWindow* workspaceWindow() const;
    bool isActiveShell() const;

protected:
    friend class ShellMgr;

    /// Called in this order around a change from A to B: B.onPreActivate(A), A.onPreDeactivate(B), the
    /// change, A.onPostDeactivate(), B.onPostActivate(). Either may be missing.
    virtual void onPreDelete() {}
    virtual void onPreActivate(Shell* /*previous*/) {}
    virtual void onPostActivate() {}
    virtual void onPreDeactivate(Shell* /*next*/) {}
    virtual void onPostDeactivate() {}
    /// The first view to show, and the one behind `view`; null at the end.
    virtual GraphicsView* onView() { return nullptr; }
    virtual GraphicsView* onNextView(GraphicsView* /*view*/) { return nullptr; }

private:
    ShellMgr* m_manager;
};

} // namespace Vu
