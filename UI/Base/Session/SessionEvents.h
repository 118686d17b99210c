#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class AssetSession;
class EnvironmentDefinition;

class SessionEvent : public Vs::Implements<SessionEvent, Vs::Event>
{
public:
    explicit SessionEvent(AssetSession* session, Vs::Timing timing = Vs::Timing::After)
        : Implements(timing), m_session(session)
    {
    }
    /// Null where a change leaves no session.
    AssetSession* assetSession() const { return m_session; }

private:
    AssetSession* m_session;
};

class EnvironmentEvent : public Vs::Implements<EnvironmentEvent, SessionEvent>
{
public:
    EnvironmentEvent(AssetSession* session, EnvironmentDefinition* environment, Vs::Timing timing)
        : Implements(session, timing), m_environment(environment)
    {
    }
    EnvironmentDefinition* environment() const { return m_environment; }

private:
    EnvironmentDefinition* m_environment;
};

/// What happens to asset sessions. Each operation does nothing unless overridden.
class SessionEventSite : public Vs::EventSite
{
public:
    virtual void sessionCreated(SessionEvent*) {}
    /// A different session, or none, has become the current one.
    virtual void currentSessionChanged(SessionEvent*) {}
    virtual void sessionPostActivateForAsset(SessionEvent*) {}
    virtual void sessionDeactivated(SessionEvent*) {}
    /// The session is about to be destroyed; everything of it still exists.
    virtual void sessionClosed(SessionEvent*) {}
    /// With timing After when a session has entered an environment, then with Notification for whoever shows
    /// it.
    virtual void environmentActivated(EnvironmentEvent*) {}
};

class SessionEventSource : public Vs::EventSource<SessionEventSite>
{
public:
    static SessionEventSource* get()
    {
        static auto* const source = new SessionEventSource;
        return source;
    }

    void fireSessionCreated(SessionEvent* event) { fire(&SessionEventSite::sessionCreated, event); }
    void fireCurrentSessionChanged(SessionEvent* event)
    {
        fire(&SessionEventSite::currentSessionChanged, event);
    }
    void fireSessionPostActivateForAsset(SessionEvent* event)
    {
        fire(&SessionEventSite::sessionPostActivateForAsset, event);
    }
    void fireSessionDeactivated(SessionEvent* event) { fire(&SessionEventSite::sessionDeactivated, event); }
    void fireSessionClosed(SessionEvent* event) { fire(&SessionEventSite::sessionClosed, event); }
    void fireEnvironmentActivated(EnvironmentEvent* event)
    {
        fire(&SessionEventSite::environmentActivated, event);
    }
};

} // namespace Vu
