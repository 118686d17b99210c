#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkPoint3d.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Vs::Scene {

/// The triangles of a mesh in an order in which neighbours in space are neighbours in number, with a tree of
/// boxes above them, so that a ray asks some dozens of them in place of all. About ten bytes a triangle.
class MeshTree
{
public:
    explicit MeshTree(const BodyMesh& mesh);

    struct Hit
    {
        double along;      ///< The place on the ray, in lengths of its direction.
        uint32_t triangle; ///< Its number in the mesh.
    };
    /// The nearest triangle, taken from both sides, that the ray meets before `limit`. Returns false if there
    /// is none. `mesh` must be the one that the tree was made of.
    bool meet(const BodyMesh& mesh, const GkPoint3d& start, const GkVector3d& direction, double limit,
              Hit& hit) const;

    /// The tree of a mesh. That of a large one is made in a thread of its own from the first question on, and
    /// null is returned meanwhile: asking every triangle once more takes less than waiting for it. Trees of
    /// meshes that are gone are dropped. Main thread only.
    static const MeshTree* of(const std::shared_ptr<const BodyMesh>& mesh);

private:
    struct Box
    {
        float low[3], high[3];
    };

    /// Node i has the children 2 i + 1 and 2 i + 2; the last `m_leaves` nodes are the leaves. The box of a
    /// node without triangles is inside out.
    std::vector<Box> m_boxes;
    std::vector<uint32_t> m_order; ///< Triangles, leaf by leaf.
    size_t m_leaves = 0;
};

/// Where a ray meets a triangle, in lengths of its direction; below 0 if it doesn't. Both sides count
/// (Moeller and Trumbore, 1997).
double meetTriangle(const BodyMesh& mesh, uint32_t triangle, const GkPoint3d& start,
                    const GkVector3d& direction);

} // namespace Vs::Scene
