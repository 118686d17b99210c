#pragma once

#include "Server/Body/BodyMesh.h"

#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <vector>

namespace Vs::Kernel {

/// For each face of a divided mesh (dividedMesh) the edges around its outside, by their numbers: of a flat
/// face its longest rim, of a cylinder the rims that go round its axis, which is both where it goes round as
/// a whole. None for other forms, of which triangles don't tell what is a rim and what a hole.
/// @param faces those of the mesh, as TriangleParts makes them.
std::vector<std::vector<uint32_t>> outerLoops(const BodyMesh& mesh, const std::vector<TopoDS_Shape>& faces);

} // namespace Vs::Kernel
