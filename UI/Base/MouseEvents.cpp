#include "UI/Base/MouseEvents.h"

#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/GraphicsView.h"
#include "UI/Base/SplitViewMgr.h"

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

void MouseEventSource::deliver(Handler handler, MouseEvent* event, bool alsoView)
{
    forEach([&](MouseEventSite* site) { (site->*handler)(event); });
    if (!alsoView || event->accepted() || m_taken)
        return;
    if (GraphicsView* view = event->canvas() ? event->canvas()->view() : nullptr)
        (static_cast<MouseEventSite*>(view)->*handler)(event);
}

void MouseEventSource::fireMouseDown(MouseEvent* event)
{
    m_button = event->button();
    m_dragging = false;
    m_taken = false;
    m_downX = event->x();
    m_downY = event->y();
    if (event->canvas())
        SplitViewMgr::get()->activeCanvas(event->canvas());
    deliver(&MouseEventSite::mouseDown, event);
    m_taken = event->accepted();
}

void MouseEventSource::fireMouseMove(MouseEvent* event)
{
    deliver(&MouseEventSite::mouseMoveGlobal, event, false);
    if (m_button != kNoMouseButton && !m_dragging &&
        std::hypot(event->x() - m_downX, event->y() - m_downY) >= kDragDistance) {
        m_dragging = true;
        deliver(&MouseEventSite::mouseDragBegin, event);
    }
    deliver(m_dragging ? &MouseEventSite::mouseDrag : &MouseEventSite::mouseMove, event);
}

void MouseEventSource::fireMouseUp(MouseEvent* event)
{
    if (std::exchange(m_dragging, false))
        deliver(&MouseEventSite::mouseDragEnd, event);
    deliver(&MouseEventSite::mouseUp, event);
    m_button = kNoMouseButton;
    m_taken = false;
}

void MouseEventSource::fireMouseDoubleClick(MouseEvent* event)
{
    deliver(&MouseEventSite::mouseDoubleClick, event);
}

void MouseEventSource::fireMouseScroll(MouseEvent* event)
{
    deliver(&MouseEventSite::mouseScroll, event);
}

} // namespace Vu
