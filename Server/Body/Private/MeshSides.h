#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkPoint3d.h"
#include "Server/Geometry/GkVector3d.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vs {

/// The triangles of a mesh, and which of them meet along a side: corners of the same coordinates count as one
/// node, however many vertices the mesh has there. A side is named by its triangle and the corner where it
/// begins. What is found doesn't depend on the order of the mesh's vertices.
class MeshSides
{
public:
    static constexpr uint32_t kNone = UINT32_MAX;

    explicit MeshSides(const BodyMesh& mesh);

    size_t triangles() const { return m_nodes.size() / 3; }
    uint32_t node(size_t triangle, size_t corner) const { return m_nodes[3 * triangle + corner % 3]; }
    size_t nodes() const { return m_places.size(); }
    const GkPoint3d& place(uint32_t node) const { return m_places[node]; }
    /// Twice the area, along the normal.
    GkVector3d area(size_t triangle) const;
    /// So thin that its normal means nothing.
    bool isThin(size_t triangle) const { return m_thin[triangle]; }
    /// Of the whole mesh.
    double size() const { return m_size; }

    /// The triangle on the other side; kNone where there is none, or several, or one that was another face
    /// already.
    uint32_t neighbour(size_t triangle, size_t corner) const { return m_neighbours[3 * triangle + corner]; }
    /// Whether the surface bends there by 30 degrees and more, or ends.
    bool isSharp(size_t triangle, size_t corner) const { return m_sharp[3 * triangle + corner]; }
    /// Of all triangles that share a side, one is its first.
    bool isFirst(size_t triangle, size_t corner) const { return m_first[3 * triangle + corner]; }

private:
    void join(const BodyMesh& mesh);
    void findThin();
    void meet(const BodyMesh& mesh);
    /// Those that share a side.
    void meet(const std::vector<uint32_t>& corners, const std::vector<uint32_t>& faces);
    bool bends(size_t first, size_t second, bool sameSense) const;

    std::vector<uint32_t> m_nodes; ///< Of each corner.
    std::vector<GkPoint3d> m_places;
    std::vector<uint32_t> m_neighbours;
    std::vector<bool> m_sharp, m_first, m_thin;
    double m_size = 0;
};

} // namespace Vs
