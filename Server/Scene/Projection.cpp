#include "Server/Scene/Projection.h"

#include "Server/Scene/Camera.h"

#include <algorithm>
#include <cmath>

namespace Vs::Scene {

namespace {

/// Nearer parts of a perspective are clipped, as a fraction of the far distance: the depth buffer has no more
/// steps than that. If the target is nearer still, it is visible nevertheless, and far depths have coarser
/// steps.
constexpr double kNearestPart = 1.0 / 4000;
constexpr double kNearestPartOfAll = 1e-6;
constexpr double kBeforeTarget = 0.1;
/// Whatever the camera says, the view is at least this wide and deep, in mm: a thousandth of the smallest
/// models.
constexpr double kSmallestSeen = 1e-9;

} // namespace

Projection::Projection(const Camera& camera, double width, double height, const BBox& bounds)
    : m_view(camera.viewMatrix()),
      m_inverseView(m_view.inverse()),
      m_width(std::max(width, 1.0)),
      m_height(std::max(height, 1.0)),
      m_near(camera.clipNear()),
      m_far(camera.clipFar()),
      m_targetDistance(camera.distance()),
      m_perspective(camera.projection() == kPerspectiveProjection && camera.distance() > 0)
{
    const double extentsWidth = std::max(std::abs(camera.extentsWidth()), kSmallestSeen);
    const double extentsHeight = std::max(std::abs(camera.extentsHeight()), kSmallestSeen);
    const double pixels = std::min(m_width / extentsWidth, m_height / extentsHeight);
    const double away = m_perspective ? camera.distance() : 1.0;
    m_halfWidth = m_width / pixels / 2 / away;
    m_halfHeight = m_height / pixels / 2 / away;
    setRange(bounds);
}

void Projection::setRange(const BBox& bounds)
{
    if (!bounds.isEmpty()) {
        // A little more than the box, which is exact where a face lies in it.
        const BBox seen = bounds.transformed(m_view);
        const double slack = std::max(bounds.diagonal() * 1e-3, kSmallestSeen);
        m_near = -seen.high().z - slack;
        m_far = -seen.low().z + slack;
    }
    if (m_perspective) {
        m_far = std::max(m_far, kSmallestSeen);
        const double wished = m_targetDistance * kBeforeTarget / m_far;
        const double nearest = std::clamp(wished, kNearestPartOfAll, kNearestPart);
        m_near = std::clamp(m_near, m_far * nearest, m_far * 0.999);
    }
    if (!(m_near < m_far))
        m_far = m_near + 1;
}

Projection Projection::mirrored(const GkMatrix3d& reflection, const BBox& bounds) const
{
    Projection mirror = *this;
    mirror.m_view = m_view * reflection;
    mirror.m_inverseView = reflection.inverse() * m_inverseView;
    mirror.setRange(bounds);
    return mirror;
}

GkPoint3d Projection::cameraToScreen(const GkPoint3d& p) const
{
    const double ahead = -p.z;
    const double scale = m_perspective ? std::max(ahead, 1e-12) : 1.0;
    return {(p.x / scale / m_halfWidth + 1) / 2 * m_width, (p.y / scale / m_halfHeight + 1) / 2 * m_height,
            ahead};
}

GkPoint3d Projection::screenToWorld(const GkPoint3d& screen) const
{
    const double scale = m_perspective ? screen.z : 1.0;
    return m_inverseView * GkPoint3d((screen.x / m_width * 2 - 1) * m_halfWidth * scale,
                                     (screen.y / m_height * 2 - 1) * m_halfHeight * scale, -screen.z);
}

GkVector3d Projection::rayDirection(double x, double y) const
{
    return (screenToWorld({x, y, 1}) - rayStart(x, y)).normal();
}

GkPoint3d Projection::rayStart(double x, double y) const
{
    return screenToWorld({x, y, 0});
}

double Projection::pixelSize(double distance) const
{
    return 2 * m_halfHeight / m_height * (m_perspective ? distance : 1.0);
}

void Projection::clipMatrix(double (&rows)[4][4], double x0, double y0, double x1, double y1) const
{
    const double left = (2 * x0 - 1) * m_halfWidth, right = (2 * x1 - 1) * m_halfWidth;
    const double bottom = (2 * y0 - 1) * m_halfHeight, top = (2 * y1 - 1) * m_halfHeight;
    const double depth = m_far - m_near;
    for (auto& row : rows)
        std::fill(std::begin(row), std::end(row), 0.0);
    rows[0][0] = 2 / (right - left);
    rows[1][1] = 2 / (top - bottom);
    const double shiftX = (right + left) / (right - left), shiftY = (top + bottom) / (top - bottom);
    if (m_perspective) {
        rows[0][2] = shiftX;
        rows[1][2] = shiftY;
        rows[2][2] = -(m_far + m_near) / depth;
        rows[2][3] = -2 * m_far * m_near / depth;
        rows[3][2] = -1;
    } else {
        rows[0][3] = -shiftX;
        rows[1][3] = -shiftY;
        rows[2][2] = -2 / depth;
        rows[2][3] = -(m_far + m_near) / depth;
        rows[3][3] = 1;
    }
}

} // namespace Vs::Scene
