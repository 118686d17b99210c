#pragma once

#include "Server/Base/Object.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"

#include <memory>

namespace Vu {

class ShellMgr;
class WorkspaceWindow;

/// A window with its shells.
class Workspace : public Vs::Implements<Workspace>
{
public:
    Workspace();
    ~Workspace() override;

    ShellMgr* shellManager() const { return m_shells.get(); }
    WorkspaceWindow* window() const { return m_window.get(); }

    /// How often the workspace was left since a session came up; for the host's own bookkeeping.
    int counter() const { return m_counter; }
    void resetCounter() { m_counter = 0; }
    void countUp() { ++m_counter; }

private:
    std::unique_ptr<WorkspaceWindow> m_window;
    std::unique_ptr<ShellMgr> m_shells;
    int m_counter = 0;
};

} // namespace Vu
