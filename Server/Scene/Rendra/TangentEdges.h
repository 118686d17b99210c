#pragma once

#include "Server/Body/BodyMesh.h"

#include <vector>

namespace Rendra {

/// Of each edge of the mesh, whether the faces that meet in it go on in one direction, as a fillet does into
/// the faces beside it: told by the normals of both at the middle of the edge.
[[nodiscard]] std::vector<bool> tangentEdges(const Vs::BodyMesh& mesh);

} // namespace Rendra
