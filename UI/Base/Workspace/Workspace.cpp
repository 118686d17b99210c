#include "UI/Base/Workspace/Workspace.h"

#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu {

Workspace::Workspace()
    : m_window(std::make_unique<WorkspaceWindow>(this)), m_shells(std::make_unique<ShellMgr>(this))
{
}

Workspace::~Workspace() = default;

} // namespace Vu
