#pragma once

#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <vector>

namespace Vs::Kernel {

/// The faces, edges and vertices of a shape made only of triangles, with the numbers that they have in its
/// mesh (partsMesh): faces without a surface, each with its triangles, straight edges and polylines (splines
/// of degree 1).
struct TriangleParts
{
    explicit TriangleParts(const TopoDS_Shape& shape);

    std::vector<TopoDS_Shape> faces, edges, vertices;
    std::vector<std::vector<uint32_t>> loops; ///< For each face, as outerLoops finds them.
};

/// Whether a shape consists only of triangles.
bool isOfTriangles(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
