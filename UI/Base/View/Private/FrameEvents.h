#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class GraphicsCanvas;

/// A canvas was drawn.
class FrameEvent : public Vs::Implements<FrameEvent, Vs::Event>
{
public:
    FrameEvent(const GraphicsCanvas* canvas, double seconds) : m_canvas(canvas), m_seconds(seconds) {}

    const GraphicsCanvas* canvas() const { return m_canvas; }
    /// How long drawing took, until the GPU was done.
    double seconds() const { return m_seconds; }

private:
    const GraphicsCanvas* m_canvas;
    double m_seconds;
};

class FrameEventSite : public Vs::EventSite
{
public:
    virtual void frameDrawn(FrameEvent*) = 0;
};

/// Tells of every picture that a canvas was given. Main thread only.
class FrameEventSource : public Vs::EventSource<FrameEventSite>
{
public:
    static FrameEventSource* get()
    {
        static auto* const source = new FrameEventSource;
        return source;
    }

    /// Whether anybody listens; only then does a canvas wait for the GPU.
    bool wanted() const { return m_wanted > 0; }
    /// Held by whoever listens.
    class [[nodiscard]] Wanted
    {
    public:
        explicit Wanted(FrameEventSite* site) : m_site(site)
        {
            get()->subscribe(site);
            ++get()->m_wanted;
        }
        ~Wanted()
        {
            get()->unsubscribe(m_site);
            --get()->m_wanted;
        }
        Wanted(const Wanted&) = delete;
        Wanted& operator=(const Wanted&) = delete;

    private:
        FrameEventSite* m_site;
    };

    void fireFrameDrawn(FrameEvent* event) { fire(&FrameEventSite::frameDrawn, event); }

private:
    int m_wanted = 0;
};

} // namespace Vu
