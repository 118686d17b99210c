#include "Server/Dimension/Private/DimensionDrawing.h"

#include "Server/Scene/StrokeFont.h"

#include <algorithm>
#include <cmath>

namespace Vs::Dimension {

namespace {

// In logical pixels of the screen.
constexpr double kArrowLength = 12, kArrowHalfWidth = 3.5;
constexpr double kLetterHeight = 12, kTextGap = 6;
/// How far an arrow may reach into its line.
constexpr double kArrowShare = 0.4;
/// So many strokes fill an arrow.
constexpr int kArrowStrokes = 4;

} // namespace

void DimensionDrawing::arrow(const GkPoint3d& tip, const GkVector3d& towards, double length)
{
    const GkVector3d along = towards.normal();
    const double size = std::min(kArrowLength * m_viewer.pixel, length * kArrowShare);
    const GkVector3d viewing = m_viewer.right.crossProduct(m_viewer.up);
    GkVector3d across = along.crossProduct(viewing).normal();
    if (across.isZeroLength())
        across = m_viewer.right;
    const GkPoint3d foot = tip - along * size;
    const double half = size * kArrowHalfWidth / kArrowLength;
    for (int i = 0; i <= kArrowStrokes; ++i)
        m_lines.push_back({tip, foot + across * (half * (2.0 * i / kArrowStrokes - 1))});
    m_lines.push_back({foot - across * half, foot + across * half});
}

GkVector3d DimensionDrawing::beside(const GkVector3d& direction) const
{
    const double x = direction.dotProduct(m_viewer.right), y = direction.dotProduct(m_viewer.up);
    const GkVector3d side = (m_viewer.up * x - m_viewer.right * y).normal();
    if (side.isZeroLength())
        return m_viewer.up;
    return side.dotProduct(m_viewer.up) < 0 ? -side : side;
}

void DimensionDrawing::text(const std::wstring& text, const GkPoint3d& place, const GkVector3d& away)
{
    if (text.empty())
        return;
    const double height = kLetterHeight * m_viewer.pixel;
    const double width = Scene::StrokeFont::width(text) * height;
    const GkVector3d side =
        (m_viewer.right * away.dotProduct(m_viewer.right) + m_viewer.up * away.dotProduct(m_viewer.up))
            .normal();
    // As far out as the box of the text reaches towards the line.
    const double reach = kTextGap * m_viewer.pixel + std::abs(side.dotProduct(m_viewer.right)) * width / 2 +
                         std::abs(side.dotProduct(m_viewer.up)) * height / 2;
    const GkPoint3d corner = place + side * reach - m_viewer.right * (width / 2) - m_viewer.up * (height / 2);
    for (const Scene::StrokeFont::Polyline& stroke : Scene::StrokeFont::lines(text)) {
        Line line;
        for (const GkPoint2d& point : stroke)
            line.push_back(corner + m_viewer.right * (point.x * height) + m_viewer.up * (point.y * height));
        m_lines.push_back(std::move(line));
    }
}

} // namespace Vs::Dimension
