#pragma once

namespace Vu {

/// A part of a canvas, in logical pixels from its upper left corner.
struct CanvasRect
{
    double left = 0, top = 0, right = 0, bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    friend bool operator==(const CanvasRect&, const CanvasRect&) = default;
};

} // namespace Vu
