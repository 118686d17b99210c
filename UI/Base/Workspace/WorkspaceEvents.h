#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class Shell;
class Workspace;

class WorkspaceEvent : public Vs::Implements<WorkspaceEvent, Vs::Event>
{
public:
    explicit WorkspaceEvent(Workspace* workspace, Vs::Timing timing = Vs::Timing::After)
        : Implements(timing), m_workspace(workspace)
    {
    }
    Workspace* workspace() const { return m_workspace; }

private:
    Workspace* m_workspace;
};

/// Carries the shell that sites agree on.
class WorkspaceShellEvent : public Vs::Implements<WorkspaceShellEvent, WorkspaceEvent>
{
public:
    WorkspaceShellEvent(Workspace* workspace, Shell* shell) : Implements(workspace), m_shell(shell) {}
    Shell* shell() const { return m_shell; }
    void shell(Shell* shell) { m_shell = shell; }

private:
    Shell* m_shell;
};

/// What happens to workspaces. Each operation does nothing unless overridden.
class WorkspaceEventSite : public Vs::EventSite
{
public:
    virtual void workspaceCreated(WorkspaceEvent*) {}
    virtual void workspaceClosed(WorkspaceEvent*) {}
    /// A workspace needs its default shell: answer with `event->shell(shell)`, a shell that its manager owns.
    virtual void workspaceDefaultShell(WorkspaceShellEvent*) {}
    /// Another shell shows.
    virtual void workspaceShellActivated(WorkspaceShellEvent*) {}
    /// The home screen has been painted: what takes time to show may be looked for now.
    virtual void workspaceWelcome(WorkspaceEvent*) {}
};

class WorkspaceEventSource : public Vs::EventSource<WorkspaceEventSite>
{
public:
    static WorkspaceEventSource* get()
    {
        static auto* const source = new WorkspaceEventSource;
        return source;
    }

    void fireWorkspaceCreated(WorkspaceEvent* event) { fire(&WorkspaceEventSite::workspaceCreated, event); }
    void fireWorkspaceClosed(WorkspaceEvent* event) { fire(&WorkspaceEventSite::workspaceClosed, event); }
    void fireWorkspaceDefaultShell(WorkspaceShellEvent* event)
    {
        fire(&WorkspaceEventSite::workspaceDefaultShell, event);
    }
    void fireWorkspaceShellActivated(WorkspaceShellEvent* event)
    {
        fire(&WorkspaceEventSite::workspaceShellActivated, event);
    }
    void fireWorkspaceWelcome(WorkspaceEvent* event) { fire(&WorkspaceEventSite::workspaceWelcome, event); }
};

} // namespace Vu
