#pragma once

#include <algorithm>

namespace Vu {

/// A rubber band over a canvas, in logical pixels from its upper left corner.
struct CanvasBand
{
    double fromX = 0, fromY = 0; ///< Where it began.
    double toX = 0, toY = 0;

    double left() const { return std::min(fromX, toX); }
    double right() const { return std::max(fromX, toX); }
    double top() const { return std::min(fromY, toY); }
    double bottom() const { return std::max(fromY, toY); }
    /// One that is drawn to the left also takes what lies only partly in it, and has dashes.
    bool crossing() const { return toX < fromX; }

    friend bool operator==(const CanvasBand&, const CanvasBand&) = default;
};

} // namespace Vu
