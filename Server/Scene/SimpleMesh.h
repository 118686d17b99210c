#pragma once

#include "Server/Scene/GeometryNode.h"

namespace Vs::Scene {

/// Geometry of one line through these points, which doesn't count in the bounds of the scene.
StrongRef<Rendra::Graphics::GeometryNode> BuildSimpleMesh(std::vector<GkPoint3d> line);

} // namespace Vs::Scene
