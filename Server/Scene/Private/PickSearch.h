#pragma once

// What the searches of Picker.h share; not for others.

#include "Server/Scene/Picker.h"
#include "Server/Scene/Private/NodeTree.h"

namespace Vs::Scene {

/// Where a ray meets a body.
struct SurfaceHit
{
    std::vector<const Rendra::Graphics::Node*> path; ///< With the node that was searched.
    uint32_t triangle = 0;
    double along = 0;

    /// `ray` is the one that met it, in the coordinates above the searched node.
    PickedPoint point(const Probe& ray) const;
};

/// The nearest before `limit`.
std::optional<SurfaceHit> nearestHit(const Rendra::Graphics::Node& root, const Probe& ray, double limit);

/// A point with the path and its transformation alone.
PickedPoint pointOf(const std::vector<const Rendra::Graphics::Node*>& path);

} // namespace Vs::Scene
