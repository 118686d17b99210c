#pragma once

#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// The rectangle of the framebuffer in which some instances are seen.
class ScreenBounds
{
public:
    explicit ScreenBounds(const Frame& frame) : m_frame(frame) {}

    void add(const Batch::Box& box);
    /// With a `margin` of pixels on each side, clipped to the frame's part; the whole part if the rectangle
    /// can't be determined because something reaches behind the viewer.
    [[nodiscard]] Area area(int margin) const;

private:
    const Frame& m_frame;
    double m_low[2] = {1e300, 1e300}, m_high[2] = {-1e300, -1e300};
    bool m_everywhere = false;
};

} // namespace Rendra
