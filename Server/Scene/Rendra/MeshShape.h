#pragma once

#include "Server/Body/BodyMesh.h"

namespace Rendra {

/// Whether the triangles bound a volume and face outwards: every side of a triangle is shared with a
/// neighbour that traverses it in the other direction. The back sides of such a mesh are never seen from
/// outside. Vertices at equal positions count as one, since the faces of one body have separate ones.
bool isClosedAndOutward(const Vs::BodyMesh& mesh);

} // namespace Rendra
