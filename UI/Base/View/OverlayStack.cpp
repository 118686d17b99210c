#include "UI/Base/View/OverlayStack.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <utility>

namespace Vu {

void OverlayStack::add(MouseOverlay* overlay)
{
    Vs::require(overlay && std::find(m_overlays.begin(), m_overlays.end(), overlay) == m_overlays.end(),
                "an overlay lies over a view once");
    m_overlays.push_back(overlay);
}

void OverlayStack::remove(MouseOverlay* overlay)
{
    std::erase(m_overlays, overlay);
    for (MouseOverlay** kept : {&m_hovered, &m_pressed})
        if (*kept == overlay)
            *kept = nullptr;
}

MouseOverlay* OverlayStack::at(MouseEvent* event) const
{
    for (auto each = m_overlays.rbegin(); each != m_overlays.rend(); ++each)
        if ((*each)->takesMouse(event))
            return *each;
    return nullptr;
}

void OverlayStack::layOut(double width, double height)
{
    for (MouseOverlay* overlay : m_overlays)
        overlay->layOut(width, height);
}

void OverlayStack::covers(double width, double height, std::vector<CanvasRect>& parts)
{
    for (MouseOverlay* overlay : m_overlays)
        overlay->covers(width, height, parts);
}

bool OverlayStack::takesMouse(MouseEvent* event)
{
    return at(event) != nullptr;
}

void OverlayStack::hover(MouseEvent* event)
{
    MouseOverlay* const now = at(event);
    if (m_hovered && m_hovered != now)
        m_hovered->hoverEnd();
    m_hovered = now;
    if (now)
        now->hover(event);
}

void OverlayStack::hoverEnd()
{
    if (MouseOverlay* before = std::exchange(m_hovered, nullptr))
        before->hoverEnd();
}

void OverlayStack::mousePress(MouseEvent* event)
{
    m_pressed = at(event);
    if (m_pressed)
        m_pressed->mousePress(event);
}

void OverlayStack::mouseDrag(MouseEvent* event)
{
    if (m_pressed)
        m_pressed->mouseDrag(event);
}

void OverlayStack::mouseRelease(MouseEvent* event)
{
    if (MouseOverlay* pressed = std::exchange(m_pressed, nullptr))
        pressed->mouseRelease(event);
}

} // namespace Vu
