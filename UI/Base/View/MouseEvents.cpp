#include "UI/Base/View/MouseEvents.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptTrigger.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/Private/Aim.h"
#include "UI/Base/View/Private/MouseLine.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/TransitionMgr.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Vu {
namespace {
/// A hand pressing a button shakes by this many pixels.
constexpr double kDragDistance = 3.0;
} // namespace

MouseEventSource* MouseEventSource::get()
{
    static auto* const source = new MouseEventSource;
    return source;
}

GraphicsCanvas* MouseEventSource::canvas() const
{
    return m_canvas ? m_canvas : SplitViewMgr::get()->activeCanvas();
}

void MouseEventSource::forget(const GraphicsCanvas* canvas)
{
    for (const GraphicsCanvas** kept : {&m_hovered, &m_pressed})
        if (*kept == canvas)
            *kept = nullptr;
    if (m_canvas == canvas)
        m_canvas = nullptr;
    if (m_lastCanvas == canvas)
        m_lastMove.reset();
    if (m_holder == canvas) {
        m_button = m_held = kNoMouseButton;
        m_dragging = false;
    }
}

MouseOverlay* MouseEventSource::overlayOf(const GraphicsCanvas* canvas)
{
    const GraphicsView* view = canvas ? canvas->view() : nullptr;
    return view ? view->mouseOverlay() : nullptr;
}

// A drag that began elsewhere continues over the overlay.
bool MouseEventSource::overlayTakes(MouseEvent* event)
{
    MouseOverlay* overlay = m_button == kNoMouseButton ? overlayOf(event->canvas()) : nullptr;
    const bool takes = overlay && overlay->takesMouse(event);
    if (!takes || m_hovered != event->canvas())
        mouseLeft(m_hovered);
    m_hovered = takes ? event->canvas() : nullptr;
    return takes;
}

void MouseEventSource::mouseLeft(const GraphicsCanvas* canvas)
{
    if (m_lastCanvas == canvas && m_lastMove)
        leave(m_lastCanvas);
    if (!canvas || canvas != m_hovered)
        return;
    m_hovered = nullptr;
    if (MouseOverlay* overlay = overlayOf(canvas))
        overlay->hoverEnd();
}

void MouseEventSource::leave(GraphicsCanvas* canvas)
{
    m_lastMove.reset();
    GraphicsCanvas* const outer = std::exchange(m_canvas, canvas);
    forEach([&](MouseEventSite* site) { site->mouseLeave(canvas); });
    m_canvas = outer;
}

void MouseEventSource::deliver(Handler handler, MouseEvent* event)
{
    // A site may send an event of its own.
    GraphicsCanvas* const outer = std::exchange(m_canvas, event->canvas());
    forEach([&](MouseEventSite* site) { (site->*handler)(event); });
    m_canvas = outer;
}

/// A button goes down: the hand takes over where a glide would have ended.
void MouseEventSource::begin(MouseEvent* event)
{
    TransitionMgr::get()->finish();
    if (event->canvas())
        SplitViewMgr::get()->activeCanvas(event->canvas());
}

void MouseEventSource::fireMouseDown(MouseEvent* event)
{
    record(&MouseEventSource::fireMouseDown, *event);
    if (m_pressed && event->button() != m_pressedButton)
        return;          // another button, while the overlay has the mouse
    m_pressed = nullptr; // or a second press of the same one: the release was lost on its way
    begin(event);
    if (overlayTakes(event)) {
        m_pressed = event->canvas();
        m_pressedButton = event->button();
        overlayOf(m_pressed)->mousePress(event);
        return;
    }
    m_button = event->button();
    m_held |= m_button;
    m_holder = event->canvas();
    m_dragging = false;
    m_downX = event->x();
    m_downY = event->y();
    m_downModifiers = event->modifierMask();
    deliver(&MouseEventSite::mouseDown, event);
}

void MouseEventSource::fireMouseMove(MouseEvent* event)
{
    record(&MouseEventSource::fireMouseMove, *event);
    if (m_pressed) {
        if (MouseOverlay* overlay = overlayOf(m_pressed))
            overlay->mouseDrag(event);
        return;
    }
    if (overlayTakes(event)) {
        if (m_lastMove)
            leave(m_lastCanvas);
        overlayOf(event->canvas())->hover(event);
        return;
    }
    m_lastMove = {kNoMouseButton, event->modifierMask(), event->x(), event->y(), 0};
    m_lastCanvas = event->canvas();
    deliver(&MouseEventSite::mouseMoveGlobal, event);
    if (m_button != kNoMouseButton && !m_dragging &&
        std::hypot(event->x() - m_downX, event->y() - m_downY) >= kDragDistance) {
        m_dragging = true;
        // A drag begins where the button went down, however fast the hand was.
        beginDrag({event->canvas(), {event->button(), event->modifierMask(), m_downX, m_downY, 0}});
    }
    deliver(m_dragging ? &MouseEventSite::mouseDrag : &MouseEventSite::mouseMove, event);
}

void MouseEventSource::beginDrag(MouseEvent event)
{
    GraphicsView* view = event.canvas() ? event.canvas()->view() : nullptr;
    const bool turns =
        m_button == kRightButton || (m_button == kMiddleButton && m_downModifiers == kShiftModifier);
    if (view && turns)
        aimTurnAt(*view, event.position());
    else if (view && m_button == kMiddleButton)
        aimAt(*view, event.position());
    deliver(&MouseEventSite::mouseDragBegin, &event);
}

void MouseEventSource::repeatMove(const GraphicsCanvas* canvas)
{
    if (!m_lastMove || m_lastCanvas != canvas || m_held != kNoMouseButton)
        return;
    MouseEvent again(m_lastCanvas, *m_lastMove);
    deliver(&MouseEventSite::mouseMove, &again);
}

void MouseEventSource::fireMouseUp(MouseEvent* event)
{
    record(&MouseEventSource::fireMouseUp, *event);
    m_held &= ~event->button();
    if (m_pressed) {
        if (event->button() != m_pressedButton)
            return;
        if (MouseOverlay* overlay = overlayOf(std::exchange(m_pressed, nullptr)))
            overlay->mouseRelease(event);
        return;
    }
    if (std::exchange(m_dragging, false))
        deliver(&MouseEventSite::mouseDragEnd, event);
    deliver(&MouseEventSite::mouseUp, event);
    m_button = kNoMouseButton;
}

void MouseEventSource::fireMouseDoubleClick(MouseEvent* event)
{
    // Two quick clicks on an overlay are two clicks.
    if (m_pressed || (m_button == kNoMouseButton && overlayTakes(event))) {
        fireMouseDown(event);
        return;
    }
    deliver(&MouseEventSite::mouseDoubleClick, event);
}

void MouseEventSource::fireMouseScroll(MouseEvent* event)
{
    if (m_pressed || overlayTakes(event))
        return;
    TransitionMgr::get()->finish();
    if (GraphicsView* view = event->canvas() ? event->canvas()->view() : nullptr)
        aimAt(*view, event->position());
    deliver(&MouseEventSite::mouseScroll, event);
}

void MouseEventSource::transcriptSubscribe(Operation operation)
{
    transcriptUnsubscribe(operation);
    m_recorded.push_back(operation);
}

void MouseEventSource::transcriptUnsubscribe(Operation operation)
{
    std::erase(m_recorded, operation);
}

bool MouseEventSource::revalidateTranscriptRecordStatus() const
{
    return Vs::TranscriptMgr::get()->recording();
}

// Before the sites are told, so that the line stands above those of the commands that the event runs.
void MouseEventSource::record(Operation operation, const MouseEvent& event)
{
    if (!revalidateTranscriptRecordStatus()) {
        m_recorded.clear();
        m_recordedButtons = kNoMouseButton;
        return;
    }
    const bool up = operation == &MouseEventSource::fireMouseUp;
    // A press begins a command that takes the release; without it, a replay would hold the button for ever.
    const bool wanted = std::find(m_recorded.begin(), m_recorded.end(), operation) != m_recorded.end() ||
                        (up && (m_recordedButtons & event.button()));
    if (!event.canvas() || !wanted)
        return;
    if (operation == &MouseEventSource::fireMouseDown)
        m_recordedButtons |= event.button();
    else if (up)
        m_recordedButtons &= ~event.button();
    for (const MouseLine::OperationName& each : MouseLine::kOperations)
        if (each.operation == operation)
            Vs::writeTranscriptLine(MouseLine::lineOf(each.name, event));
}

} // namespace Vu
