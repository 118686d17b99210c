#pragma once

#include "Server/Scene/Private/PickSearch.h"
#include "Server/Scene/Projection.h"

namespace Vs::Scene {

/// The rays through places of a screen, and the depth of what they hit. Depths are those of Projection.
class ViewRay
{
public:
    /// `root` is what the rays may hit: they begin in front of all of it. The projection must outlive this.
    ViewRay(const Rendra::Graphics::Node& root, const Projection& projection);

    const Projection& projection() const { return m_projection; }
    /// Through a place in pixels; the direction has unit length.
    Probe at(double x, double y) const;
    double depthOf(const Probe& ray, double along) const;
    double alongOf(const Probe& ray, double depth) const;

    /// How far an edge may be behind the surfaces that it bounds, since these are flat between points.
    double slackAt(double depth) const;
    /// Whether a surface below `root` is in front of a place, in screen coordinates.
    bool isHidden(const Rendra::Graphics::Node& root, const GkPoint3d& screen) const;

private:
    const Projection& m_projection;
    double m_back = 0; ///< How far in front of the position rays start.
};

} // namespace Vs::Scene
