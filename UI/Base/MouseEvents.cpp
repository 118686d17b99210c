#include "UI/Base/MouseEvents.h"

#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/TransitionMgr.h"

#include <cmath>
#include <utility>

namespace Vu {
namespace {
/// A hand that presses a button shakes by this many pixels.
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
    if (m_canvas == canvas)
        m_canvas = nullptr;
}

void MouseEventSource::deliver(Handler handler, MouseEvent* event)
{
    // A site may send an event of its own.
    GraphicsCanvas* const outer = std::exchange(m_canvas, event->canvas());
    forEach([&](MouseEventSite* site) { (site->*handler)(event); });
    m_canvas = outer;
}

void MouseEventSource::fireMouseDown(MouseEvent* event)
{
    // The hand takes over where a glide would have ended.
    TransitionMgr::get()->finish();
    m_button = event->button();
    m_dragging = false;
    m_downX = event->x();
    m_downY = event->y();
    if (event->canvas())
        SplitViewMgr::get()->activeCanvas(event->canvas());
    deliver(&MouseEventSite::mouseDown, event);
}

void MouseEventSource::fireMouseMove(MouseEvent* event)
{
    deliver(&MouseEventSite::mouseMoveGlobal, event);
    if (m_button != kNoMouseButton && !m_dragging &&
        std::hypot(event->x() - m_downX, event->y() - m_downY) >= kDragDistance) {
        m_dragging = true;
        // A drag begins where the button went down, however fast the hand was.
        MouseEvent begin(event->canvas(), {event->button(), event->modifierMask(), m_downX, m_downY, 0});
        deliver(&MouseEventSite::mouseDragBegin, &begin);
    }
    deliver(m_dragging ? &MouseEventSite::mouseDrag : &MouseEventSite::mouseMove, event);
}

void MouseEventSource::fireMouseUp(MouseEvent* event)
{
    if (std::exchange(m_dragging, false))
        deliver(&MouseEventSite::mouseDragEnd, event);
    deliver(&MouseEventSite::mouseUp, event);
    m_button = kNoMouseButton;
}

void MouseEventSource::fireMouseDoubleClick(MouseEvent* event)
{
    deliver(&MouseEventSite::mouseDoubleClick, event);
}

void MouseEventSource::fireMouseScroll(MouseEvent* event)
{
    TransitionMgr::get()->finish();
    deliver(&MouseEventSite::mouseScroll, event);
}

} // namespace Vu
