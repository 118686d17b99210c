#include "Server/Scene/Private/ViewRay.h"

#include <algorithm>
#include <cmath>

namespace Vs::Scene {

// A parallel view has no eye that bodies would have to be in front of.
ViewRay::ViewRay(const Rendra::Graphics::Node& root, const Projection& projection) : m_projection(projection)
{
    if (projection.perspective() || root.boundingBox().isEmpty())
        return;
    const BBox seen = root.boundingBox().transformed(projection.view());
    m_back = std::max(0.0, seen.high().z) + seen.diagonal() * 1e-3;
}

Probe ViewRay::at(double x, double y) const
{
    const GkVector3d along = m_projection.rayDirection(x, y);
    return {m_projection.rayStart(x, y) - along * m_back, along};
}

double ViewRay::depthOf(const Probe& ray, double along) const
{
    return -(m_projection.view() * (ray.start + ray.direction * along)).z;
}

double ViewRay::alongOf(const Probe& ray, double depth) const
{
    return (depth - depthOf(ray, 0)) / -(m_projection.view() * ray.direction).z;
}

double ViewRay::slackAt(double depth) const
{
    return m_projection.pixelSize(std::max(depth, 0.0)) + std::abs(depth) * 1e-6;
}

bool ViewRay::isHidden(const Rendra::Graphics::Node& root, const GkPoint3d& screen) const
{
    const Probe ray = at(screen.x, screen.y);
    const double before = alongOf(ray, screen.z - slackAt(screen.z));
    return before > 0 && nearestHit(root, ray, before);
}

} // namespace Vs::Scene
