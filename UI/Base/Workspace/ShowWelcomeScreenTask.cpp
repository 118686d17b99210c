#include "UI/Base/Workspace/ShowWelcomeScreenTask.h"

#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu {

bool ShowWelcomeScreenTask::run()
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    if (!window || !window->shown())
        return true;
    WorkspaceEvent event(window->workspace());
    WorkspaceEventSource::get()->fireWorkspaceWelcome(&event);
    return true;
}

} // namespace Vu
