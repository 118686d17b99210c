#pragma once

#include "Server/Body/BodyMesh.h"

#include <vector>

namespace Vs {

/// For each edge of the mesh, whether the adjacent faces continue tangentially, as a fillet does into its
/// neighbours: determined from the normals of both at the middle of the edge.
[[nodiscard]] std::vector<bool> tangentEdges(const BodyMesh& mesh);

} // namespace Vs
