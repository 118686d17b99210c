#include "UI/Commands/Shells/DefaultShellFactory.h"

#include "UI/Base/Workspace/Workspace.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"

namespace Vu::Commands {

DefaultShellFactory::DefaultShellFactory()
{
    m_subscriptions.add(WorkspaceEventSource::get(), this);
}

void DefaultShellFactory::workspaceDefaultShell(WorkspaceShellEvent* event)
{
    if (event->shell())
        event->shell(nullptr);
    event->shell(findOrMakeShell<ManagementShell>(event->workspace()->shellManager()));
}

} // namespace Vu::Commands
