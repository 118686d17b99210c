#pragma once

#include "Server/Body/BodyMesh.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Vs::Translate {

/// Loose triangles joined at corners of equal coordinates: the nodes, and for each triangle its three nodes
/// and its area vector.
struct JoinedTriangles
{
    using Vertex = std::array<float, 3>;
    using Normal = std::array<float, 3>;

    std::vector<Vertex> nodes;
    std::vector<std::array<uint32_t, 3>> triangles;
    std::vector<Normal> areas;
};

/// `positions` holds three coordinates for each vertex, and `triangles` three vertices for each triangle;
/// their order is kept.
JoinedTriangles joinTriangles(const std::vector<float>& positions, const std::vector<uint32_t>& triangles);

/// The same for triangles that share no vertices: three corners of three coordinates each.
JoinedTriangles joinTriangles(const std::vector<float>& corners);

/// Gives each corner the mean normal of the triangles around its node that are nearly coplanar with it (less
/// than 30 degrees apart); corners of one node with one normal become one vertex of the mesh. Fills the
/// positions, normals, triangles and bounds of a mesh that has none yet.
void addVertices(const JoinedTriangles& joined, BodyMesh& mesh);

/// Adds a line wherever two triangles meet at an angle of more than 30 degrees, or a triangle has no
/// neighbour.
void addEdgeLines(const JoinedTriangles& joined, BodyMesh& mesh);

} // namespace Vs::Translate
