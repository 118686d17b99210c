#pragma once

#include "Server/Scene/Node.h"

#include <optional>

namespace Vs::Scene {

/// Of everything visible at a node and below, the point that lies farthest in a direction, in the coordinates
/// above the node; nothing if nothing is visible. Uses the mesh points of bodies, and the boxes of helpers.
/// Main thread only.
[[nodiscard]] std::optional<GkPoint3d> outermostPoint(const Rendra::Graphics::Node& node,
                                                      const GkVector3d& direction);

} // namespace Vs::Scene
