#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class GraphicsCanvas;

/// A canvas was resized.
class CanvasEvent : public Vs::Implements<CanvasEvent, Vs::Event>
{
public:
    explicit CanvasEvent(const GraphicsCanvas* canvas) : m_canvas(canvas) {}

    const GraphicsCanvas* canvas() const { return m_canvas; }

private:
    const GraphicsCanvas* m_canvas;
};

class CanvasEventSite : public Vs::EventSite
{
public:
    virtual void canvasResized(CanvasEvent* event) = 0;
};

/// For what has a fixed size in pixels, or a fixed place on the screen. Main thread only.
class CanvasEventSource : public Vs::EventSource<CanvasEventSite>
{
public:
    static CanvasEventSource* get()
    {
        static auto* const source = new CanvasEventSource;
        return source;
    }

    void fireCanvasResized(CanvasEvent* event) { fire(&CanvasEventSite::canvasResized, event); }
};

} // namespace Vu
