#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class Shell;

class ShellEvent : public Vs::Implements<ShellEvent, Vs::Event>
{
public:
    ShellEvent(Shell* shell, Vs::Timing timing) : Implements(timing), m_shell(shell) {}
    Shell* shell() const { return m_shell; }

private:
    Shell* m_shell;
};

/// Shells come to the top of their workspace and leave it. Each operation does nothing unless overridden.
class ShellEventSite : public Vs::EventSite
{
public:
    /// Timing::After once it has taken its place, and Timing::Notification for those that stand around it.
    virtual void shellActivated(ShellEvent*) {}
    /// Timing::After; no other shell is active yet.
    virtual void shellDeactivated(ShellEvent*) {}
};

class ShellEventSource : public Vs::EventSource<ShellEventSite>
{
public:
    static ShellEventSource* get()
    {
        static auto* const source = new ShellEventSource;
        return source;
    }

    void fireShellActivated(ShellEvent* event) { fire(&ShellEventSite::shellActivated, event); }
    void fireShellDeactivated(ShellEvent* event) { fire(&ShellEventSite::shellDeactivated, event); }

private:
    ShellEventSource() = default;
};

} // namespace Vu
