#pragma once

#include "Server/Scene/Node.h"

#include <optional>

namespace Vs::Scene {

/// Of everything visible at a node and below, the point that lies farthest in a direction, in the coordinates
/// above the node; nothing where nothing is visible. Bodies by the points of their meshes, helpers by their
/// boxes. Main thread only.
[[nodiscard]] std::optional<GkPoint3d> outermostPoint(const Rendra::Graphics::Node& node,
                                                      const GkVector3d& direction);

} // namespace Vs::Scene
