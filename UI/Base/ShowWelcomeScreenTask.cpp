#include "UI/Base/ShowWelcomeScreenTask.h"

#include "UI/Base/WorkspaceEvents.h"
#include "UI/Base/WorkspaceWindow.h"

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
