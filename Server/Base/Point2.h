#pragma once

namespace Vs {

/// A distance on the screen, in logical pixels.
struct Size2
{
    int cx = 0, cy = 0;
    friend bool operator==(const Size2&, const Size2&) = default;
};

/// A place in a canvas, in logical pixels from its upper left corner.
struct Point2
{
    int x = 0, y = 0;
    friend bool operator==(const Point2&, const Point2&) = default;
    friend Size2 operator-(const Point2& a, const Point2& b) { return {a.x - b.x, a.y - b.y}; }
};

} // namespace Vs
