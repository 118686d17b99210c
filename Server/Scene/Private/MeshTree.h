#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkPoint3d.h"
#include "Server/Scene/Private/BoxTree.h"

#include <cstdint>
#include <memory>

namespace Vs::Scene {

/// The triangles, edges and vertices of a mesh, indexed for searches. About ten bytes each.
class MeshTree
{
public:
    explicit MeshTree(const BodyMesh& mesh);

    /// Triangles by their numbers.
    const BoxTree& triangles() const { return m_triangles; }
    /// The straight segments of edges, by the first of their two points in BodyMesh::edgePoints.
    const BoxTree& segments() const { return m_segments; }
    /// By their numbers in BodyMesh::vertexPoints.
    const BoxTree& vertices() const { return m_vertices; }

    struct Hit
    {
        double along;      ///< The place on the ray, in multiples of its direction.
        uint32_t triangle; ///< Its number in the mesh.
    };
    /// The nearest triangle, of either side, that the ray hits before `limit`. Returns false if there is
    /// none. `mesh` must be the one that the tree was made from.
    bool meet(const BodyMesh& mesh, const GkPoint3d& start, const GkVector3d& direction, double limit,
              Hit& hit) const;

    /// The tree of a mesh; null for one so small that searching everything takes no longer. The tree of a
    /// large one is built in a separate thread from the first query on, and null is returned meanwhile. Trees
    /// of meshes that are gone are dropped. Main thread only.
    static const MeshTree* of(const std::shared_ptr<const BodyMesh>& mesh);
    /// Whether the mesh is that small.
    static bool isSmall(const BodyMesh& mesh);

private:
    BoxTree m_triangles, m_segments, m_vertices;
};

/// Where a ray hits a triangle, in multiples of its direction; below 0 if it doesn't. Both sides count
/// (Moeller and Trumbore, 1997).
double meetTriangle(const BodyMesh& mesh, uint32_t triangle, const GkPoint3d& start,
                    const GkVector3d& direction);

/// Whether any face of the mesh is seen from outside alone.
bool hasOneSidedFaces(const BodyMesh& mesh);
/// Whether a ray meets a triangle of such a face from inside, where nobody sees it.
bool isUnseen(const BodyMesh& mesh, uint32_t triangle, const GkVector3d& direction);

/// The edge whose straight segment begins at a point of BodyMesh::edgePoints; -1 if the point ends one.
int64_t edgeOfSegment(const BodyMesh& mesh, uint32_t point);
/// The face that a triangle belongs to. Every triangle of a mesh with faces does.
uint32_t faceOfTriangle(const BodyMesh& mesh, uint32_t triangle);

} // namespace Vs::Scene
