#include "Server/Scene/Rendra/ScreenBounds.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

void ScreenBounds::add(const Batch::Box& box)
{
    for (int corner = 0; corner < 8 && !m_everywhere; ++corner) {
        GkPoint3d at = GkPoint3d() + m_frame.scene.list.origin();
        at.x += box.centre[0] + (corner & 1 ? box.half[0] : -box.half[0]);
        at.y += box.centre[1] + (corner & 2 ? box.half[1] : -box.half[1]);
        at.z += box.centre[2] + (corner & 4 ? box.half[2] : -box.half[2]);
        const GkPoint3d seen = m_frame.projection.worldToScreen(at);
        m_everywhere = m_frame.projection.perspective() && seen.z <= 0;
        m_low[0] = std::min(m_low[0], seen.x);
        m_low[1] = std::min(m_low[1], seen.y);
        m_high[0] = std::max(m_high[0], seen.x);
        m_high[1] = std::max(m_high[1], seen.y);
    }
}

Area ScreenBounds::area(int margin) const
{
    if (m_everywhere)
        return m_frame.part;
    if (m_low[0] > m_high[0])
        return {m_frame.part.x, m_frame.part.y, 0, 0};
    const auto pixel = [](double value) { return int(std::lround(std::clamp(value, -1e6, 1e6))); };
    const int x = m_frame.area.x + pixel(m_low[0]) - margin, y = m_frame.area.y + pixel(m_low[1]) - margin;
    return intersection(m_frame.part, {x, y, pixel(m_high[0] - m_low[0]) + 2 * margin,
                                       pixel(m_high[1] - m_low[1]) + 2 * margin});
}

} // namespace Rendra
