#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class AssetSession;

/// What the user does with the mouse that takes longer than a click.
enum class EInteraction {
    CameraChange = 4,
};

class InteractionEvent : public Vs::Implements<InteractionEvent, Vs::Event>
{
public:
    /// The session may be null.
    InteractionEvent(AssetSession* session, EInteraction kind) : m_session(session), m_kind(kind) {}
    AssetSession* assetSession() const { return m_session; }
    EInteraction kind() const { return m_kind; }

private:
    AssetSession* m_session;
    EInteraction m_kind;
};

/// Each operation does nothing unless overridden.
class InteractionEventSite : public Vs::EventSite
{
public:
    virtual void startInteraction(InteractionEvent*) {}
    virtual void endInteraction(InteractionEvent*) {}
};

class InteractionEventSource : public Vs::EventSource<InteractionEventSite>
{
public:
    static InteractionEventSource* get()
    {
        static auto* const source = new InteractionEventSource;
        return source;
    }

    void fireStartInteraction(InteractionEvent* event)
    {
        fire(&InteractionEventSite::startInteraction, event);
    }
    void fireEndInteraction(InteractionEvent* event) { fire(&InteractionEventSite::endInteraction, event); }
};

} // namespace Vu
