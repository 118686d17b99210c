#pragma once

#include "UI/Base/View/MouseOverlay.h"

#include <vector>

namespace Vu {

/// Several overlays of one view; the one added last gets the mouse first.
class OverlayStack : public MouseOverlay
{
public:
    /// Not owned; must exist until it is removed.
    void add(MouseOverlay* overlay);
    void remove(MouseOverlay* overlay);

    void layOut(double width, double height) override;
    void covers(double width, double height, std::vector<CanvasRect>& parts) override;
    bool takesMouse(MouseEvent* event) override;
    void hover(MouseEvent* event) override;
    void hoverEnd() override;
    void mousePress(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseRelease(MouseEvent* event) override;

private:
    /// The topmost that takes the mouse there; null for none.
    MouseOverlay* at(MouseEvent* event) const;

    std::vector<MouseOverlay*> m_overlays;
    MouseOverlay* m_hovered = nullptr;
    MouseOverlay* m_pressed = nullptr;
};

} // namespace Vu
