#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class GraphicsCanvas;

/// The mouse buttons by value.
enum MouseButton { kNoMouseButton = 0, kLeftButton = 1, kRightButton = 2, kMiddleButton = 4 };

/// Modifier keys by value.
enum ModifierMask : unsigned {
    kNoModifier = 0,
    kShiftModifier = 0x2000000,
    kControlModifier = 0x4000000,
    kAltModifier = 0x8000000,
};

/// The mouse in a canvas. Positions are logical pixels from the canvas's upper left corner.
class MouseEvent : public Vs::Implements<MouseEvent, Vs::Event>
{
public:
    struct Data
    {
        int button = kNoMouseButton;      ///< The button that changed; in a drag, the one that is held.
        unsigned modifiers = kNoModifier; ///< ModifierMask values, added up.
        double x = 0, y = 0;
        double delta = 0; ///< Wheel steps, 1 for one notch away from the user.
    };

    MouseEvent(GraphicsCanvas* canvas, const Data& data) : m_canvas(canvas), m_data(data) {}

    GraphicsCanvas* canvas() const { return m_canvas; }
    int button() const { return m_data.button; }
    unsigned modifierMask() const { return m_data.modifiers; }
    double x() const { return m_data.x; }
    double y() const { return m_data.y; }
    double delta() const { return m_data.delta; }

    /// A site that has dealt with the event says so; the view's own handling is then left out. For a press,
    /// that holds until the button goes up.
    void accept() { m_accepted = true; }
    bool accepted() const { return m_accepted; }

private:
    GraphicsCanvas* m_canvas;
    Data m_data;
    bool m_accepted = false;
};

/// What listens to the mouse. Each operation does nothing unless overridden.
class MouseEventSite : public Vs::EventSite
{
public:
    virtual void mouseMove(MouseEvent*) {}
    virtual void mouseDown(MouseEvent*) {}
    virtual void mouseUp(MouseEvent*) {}
    virtual void mouseDoubleClick(MouseEvent*) {}
    virtual void mouseDragBegin(MouseEvent*) {}
    virtual void mouseDrag(MouseEvent*) {}
    virtual void mouseDragEnd(MouseEvent*) {}
    virtual void mouseScroll(MouseEvent*) {}
    /// A move anywhere, also outside of the canvas that has the button.
    virtual void mouseMoveGlobal(MouseEvent*) {}
};

/// Hands the events of all canvases to the sites, in the order of their subscription, then to the canvas's
/// own view. A move with a button down is a drag as soon as it has gone a few pixels.
class MouseEventSource : public Vs::EventSource<MouseEventSite>
{
public:
    static MouseEventSource* get();

    void fireMouseMove(MouseEvent* event);
    void fireMouseDown(MouseEvent* event);
    void fireMouseUp(MouseEvent* event);
    void fireMouseDoubleClick(MouseEvent* event);
    void fireMouseScroll(MouseEvent* event);

private:
    using Handler = void (MouseEventSite::*)(MouseEvent*);
    void deliver(Handler handler, MouseEvent* event, bool alsoView = true);

    int m_button = kNoMouseButton;
    bool m_taken = false; ///< A site took the press.
    bool m_dragging = false;
    double m_downX = 0, m_downY = 0;
};

} // namespace Vu
