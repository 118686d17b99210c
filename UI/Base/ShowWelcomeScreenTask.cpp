#include "UI/Base/ShowWelcomeScreenTask.h"

#include "UI/Base/WorkspaceWindow.h"

namespace Vu {

bool ShowWelcomeScreenTask::run()
{
    if (WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow())
        window->showHomePage();
    return true;
}

} // namespace Vu
