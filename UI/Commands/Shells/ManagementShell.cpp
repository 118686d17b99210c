#include "UI/Commands/Shells/ManagementShell.h"

#include "Server/Base/ResourceMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/ShowWelcomeScreenTask.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/ManagementGraphicsView.h"
#include "UI/Commands/Transcripts/DebugDialog.h"

namespace Vu::Commands {

ManagementShell* ManagementShell::make(ShellMgr* manager)
{
    return new ManagementShell(manager);
}

ManagementShell::ManagementShell(ShellMgr* manager) : Implements(manager) {}

ManagementShell::~ManagementShell()
{
    if (m_arrangement)
        m_arrangement->destroy();
    m_arrangement = nullptr;
}

void ManagementShell::onPostActivate()
{
    ArrangementMgr* arrangements = workspaceWindow()->arrangementManager();
    if (!m_arrangement)
        m_arrangement = Arrangement::make(
            arrangements, Layout::load(Resources::ManagementShellLayout()->localPath(), std::wstring()));
    arrangements->arrangement(m_arrangement);
    bindView(true, true);
    if (DebugDialog::savedShowState())
        DebugDialog::get(); // It hears that the shell has been activated.
    Shell::onPostActivate();
    if (!Application::testing())
        Application::get()->idleTasks()->add(new ShowWelcomeScreenTask);
}

void ManagementShell::onPreDeactivate(Shell* next)
{
    Shell::onPreDeactivate(next);
    unbindView(nullptr);
    if (m_arrangement)
        workspaceWindow()->arrangementManager()->remove(m_arrangement);
}

void ManagementShell::onPostDeactivate()
{
    Shell::onPostDeactivate();
}

GraphicsView* ManagementShell::onView()
{
    static ManagementGraphicsView* const view = ManagementGraphicsView::make();
    return view;
}

GraphicsView* ManagementShell::onNextView(GraphicsView*)
{
    return onView();
}

} // namespace Vu::Commands
