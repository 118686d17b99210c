#pragma once

#include "Server/Body/BodyMesh.h"

#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <vector>

namespace Vs::Kernel {

/// For each face of a divided mesh (dividedMesh) the edges around its outside, by their numbers: for a flat
/// face its longest boundary, for a cylinder the boundaries that run around its axis, two if it is a full
/// one. None for other forms, where triangles don't reveal which boundary is the outer one and which a hole.
/// @param faces those of the mesh, as TriangleParts makes them.
std::vector<std::vector<uint32_t>> outerLoops(const BodyMesh& mesh, const std::vector<TopoDS_Shape>& faces);

} // namespace Vs::Kernel
