#pragma once

#include "Server/Body/BodyMesh.h"

namespace Rendra {

/// Whether the triangles are the skin of a volume and look outwards: every side of a triangle is shared with
/// a neighbour that runs through it the other way. The back sides of such a mesh are never seen from outside.
/// Vertices count as one where their positions are equal, as faces of one body have theirs apart.
bool isClosedAndOutward(const Vs::BodyMesh& mesh);

} // namespace Rendra
