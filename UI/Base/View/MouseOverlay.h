#pragma once

#include "UI/Base/Program/CanvasRect.h"

#include <vector>

namespace Vu {

class MouseEvent;

/// An overlay of a view's scene that captures the mouse where it lies: nobody else is told of a move or a
/// press over it, nor of the drag that begins with such a press.
class MouseOverlay
{
public:
    virtual ~MouseOverlay() = default;

    /// The view's canvas has this size, in logical pixels. Called before the view is drawn.
    virtual void layOut(double width, double height) = 0;

    /// Adds the parts of a canvas of this size that it covers, so that nothing is framed behind them.
    virtual void covers(double /*width*/, double /*height*/, std::vector<CanvasRect>& /*parts*/) {}

    /// Whether the overlay has something under the mouse. Asked before each event without a button held.
    [[nodiscard]] virtual bool takesMouse(MouseEvent* event) = 0;
    /// The mouse, with no button held, is at a place that the overlay takes.
    virtual void hover(MouseEvent* event) = 0;
    /// It is no longer.
    virtual void hoverEnd() = 0;
    virtual void mousePress(MouseEvent* event) = 0;
    /// The mouse moves after a press, anywhere.
    virtual void mouseDrag(MouseEvent* event) = 0;
    virtual void mouseRelease(MouseEvent* event) = 0;
};

} // namespace Vu
