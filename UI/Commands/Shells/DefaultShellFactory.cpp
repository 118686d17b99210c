#include "UI/Commands/Shells/DefaultShellFactory.h"

#include "UI/Base/Workspace/Workspace.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"

namespace Vu::Commands {

DefaultShellFactory::DefaultShellFactory()
{
    WorkspaceEventSource::get()->subscribe(this);
}

DefaultShellFactory::~DefaultShellFactory()
{
    WorkspaceEventSource::get()->unsubscribe(this);
}

void DefaultShellFactory::workspaceDefaultShell(WorkspaceShellEvent* event)
{
    if (event->shell())
        event->shell(nullptr);
    event->shell(findOrMakeShell<ManagementShell>(event->workspace()->shellManager()));
}

} // namespace Vu::Commands
