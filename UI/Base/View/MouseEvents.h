#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/Point2.h"

#include <cmath>
#include <optional>
#include <vector>

namespace Vu {

class GraphicsCanvas;
class MouseOverlay;

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
        int delta = 0; ///< Of the wheel, 120 for one notch away from the user; touchpads send less at a time.
    };

    MouseEvent(GraphicsCanvas* canvas, const Data& data) : m_canvas(canvas), m_data(data) {}

    GraphicsCanvas* canvas() const { return m_canvas; }
    int button() const { return m_data.button; }
    unsigned modifierMask() const { return m_data.modifiers; }
    /// To the nearest whole pixel.
    Vs::Point2 position() const
    {
        return {static_cast<int>(std::lround(m_data.x)), static_cast<int>(std::lround(m_data.y))};
    }
    double x() const { return m_data.x; }
    double y() const { return m_data.y; }
    int delta() const { return m_data.delta; }

private:
    GraphicsCanvas* m_canvas;
    Data m_data;
};

/// Listens to the mouse. Each operation does nothing unless overridden.
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
    /// The mouse no longer moves over the canvas: it has left it, or is over an overlay of the view.
    virtual void mouseLeave(GraphicsCanvas*) {}
};

/// Hands the events of all canvases to the sites, in the order of their subscription. A move with a button
/// down becomes a drag after a few pixels; its beginning is reported with the place of the press.
///
/// What lies over a view (GraphicsView::mouseOverlay) comes first: an event over it, and the whole of a drag
/// that begins there, is reported to nobody else.
///
/// Before a turn of the wheel, and before a drag of the middle or right button begins, the target of the
/// camera, and for a turn its pivot, are brought to what lies under the pointer.
class MouseEventSource : public Vs::EventSource<MouseEventSite>
{
public:
    static MouseEventSource* get();
    using Operation = void (MouseEventSource::*)(MouseEvent*);

    void fireMouseMove(MouseEvent* event);
    void fireMouseDown(MouseEvent* event);
    void fireMouseUp(MouseEvent* event);
    void fireMouseDoubleClick(MouseEvent* event);
    void fireMouseScroll(MouseEvent* event);
    /// The mouse has left the canvas.
    void mouseLeft(const GraphicsCanvas* canvas);

    /// Tells the sites once more that the mouse is where it was last, if that was over the canvas and no
    /// button is down: what lies there may be something else now.
    void repeatMove(const GraphicsCanvas* canvas);

    /// Has each event that comes to the operation (fireMouseDown, fireMouseUp, fireMouseMove) written into
    /// the transcript that is being recorded, as a line of the area "Mouse", until it is unsubscribed or the
    /// recording ends. The release of a button whose press was written is written in any case. Another
    /// operation, one that is subscribed already, and one that isn't, change nothing.
    void transcriptSubscribe(Operation operation);
    void transcriptUnsubscribe(Operation operation);
    /// Whether a transcript is being recorded now.
    bool revalidateTranscriptRecordStatus() const;

    /// The canvas whose event is being delivered; at any other time the one that has the user's attention.
    GraphicsCanvas* canvas() const;
    /// Whether the button went down and has not come up yet.
    bool isHeld(int button) const { return (m_held & button) != 0; }
    /// For GraphicsCanvas: forgets what is about to go, and the buttons that it would be told the release of.
    void forget(const GraphicsCanvas* canvas);

private:
    using Handler = void (MouseEventSite::*)(MouseEvent*);
    void deliver(Handler handler, MouseEvent* event);
    void leave(GraphicsCanvas* canvas);
    void beginDrag(MouseEvent event);
    static MouseOverlay* overlayOf(const GraphicsCanvas* canvas);
    bool overlayTakes(MouseEvent* event);
    void begin(MouseEvent* event);
    void record(Operation operation, const MouseEvent& event);

    int m_button = kNoMouseButton;              ///< The one that went down last.
    int m_held = kNoMouseButton;                ///< All that are down.
    const GraphicsCanvas* m_holder = nullptr;   ///< Where the last of them went down.
    int m_pressedButton = kNoMouseButton;       ///< The one that the overlay has.
    GraphicsCanvas* m_canvas = nullptr;         ///< Of the event being delivered.
    const GraphicsCanvas* m_hovered = nullptr;  ///< Whose overlay the mouse is over, or was when last told.
    const GraphicsCanvas* m_pressed = nullptr;  ///< Whose overlay has a button held down.
    std::optional<MouseEvent::Data> m_lastMove; ///< Nothing once the mouse has left that canvas.
    GraphicsCanvas* m_lastCanvas = nullptr;     ///< Where it moved.
    std::vector<Operation> m_recorded;
    int m_recordedButtons = kNoMouseButton; ///< Those whose press was written, and no release yet.
    bool m_dragging = false;
    double m_downX = 0, m_downY = 0;
    unsigned m_downModifiers = kNoModifier;
};

} // namespace Vu
