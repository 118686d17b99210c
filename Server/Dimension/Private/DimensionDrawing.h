#pragma once

#include "Server/Dimension/DimensionInfo.h"

#include <vector>

namespace Vs::Dimension {

/// Collects the lines of a dimension. Sizes are those of the screen.
class DimensionDrawing
{
public:
    using Line = std::vector<GkPoint3d>;

    explicit DimensionDrawing(const Viewer& viewer) : m_viewer(viewer) {}

    void line(Line points) { m_lines.push_back(std::move(points)); }
    /// An arrow whose tip is there, and which comes from the other end of a line of `length`: on short lines
    /// it is smaller.
    void arrow(const GkPoint3d& tip, const GkVector3d& towards, double length);
    /// The text upright on the screen, beside a line through `place` that runs along `line`; `away` says on
    /// which side.
    void text(const std::wstring& text, const GkPoint3d& place, const GkVector3d& away);
    /// The direction on the screen at right angles to another, upwards.
    GkVector3d beside(const GkVector3d& direction) const;

    std::vector<Line> takeLines() { return std::move(m_lines); }

private:
    Viewer m_viewer;
    std::vector<Line> m_lines;
};

} // namespace Vs::Dimension
