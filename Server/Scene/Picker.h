#pragma once

#include "Server/Scene/Node.h"

#include <optional>
#include <vector>

namespace Vs::Scene {

/// The place where a ray meets a body first.
struct PickedPoint
{
    /// From the node below the one that was searched down to the body's own.
    std::vector<StrongRef<Rendra::Graphics::Node>> path;
    GkMatrix3d localToWorld; ///< From the body's coordinates.
    GkPoint3d localPoint;
    GkVector3d localNormal; ///< Of the surface there, length one, towards the start of the ray.
    double along = 0;       ///< The place on the ray, in lengths of its direction.
};

/// The nearest visible body that a ray meets, its triangles taken from both sides; nothing if it meets none,
/// or if it is no ray (a zero direction, numbers that are none). `root` is searched with its own
/// transformation.
std::optional<PickedPoint> pick(const Rendra::Graphics::Node& root, const GkPoint3d& start,
                                const GkVector3d& direction);

} // namespace Vs::Scene
