#include "UI/Base/Workspace/Shell.h"

#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/Workspace.h"

namespace Vu {

WorkspaceWindow* Shell::workspaceWindow() const
{
    Workspace* workspace = m_manager ? m_manager->workspace() : nullptr;
    return workspace ? workspace->window() : nullptr;
}

bool Shell::isActiveShell() const
{
    return m_manager && m_manager->activeShell() == this;
}

} // namespace Vu
