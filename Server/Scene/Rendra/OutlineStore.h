#pragma once

#include "Server/Scene/Rendra/DrawList.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace Rendra {

/// Finds the silhouettes of round faces: the lines on which surfaces turn away from the viewer, according to
/// the normals at their triangles' corners. Flat faces have only their edges. Triangles are examined in
/// groups, most of which face one way as a whole and cost nothing more.
class OutlineStore
{
public:
    /// The end of a line.
    struct Vertex
    {
        float place[4]; ///< Relative to the draw list's origin; then how visible the line is.
        float body[4];  ///< Its size, 0 or 1 for pointed at or 2 for selected, its opacity, 0.
    };
    struct Limits
    {
        float leastPixels; ///< Smaller bodies have none; their lines fade in with size.
        float pixel;       ///< Pixels for a logical one.
    };

    /// Adds those of a batch's instances in view, two vertices per segment. `shown` is what is drawn of them.
    void gather(const Batch& batch, const std::shared_ptr<const Vs::BodyMesh>& shown,
                const Vs::Scene::Projection& projection, const GkVector3d& origin, const Limits& limits,
                std::vector<Vertex>& vertices);
    /// Forgets meshes that are gone.
    void collect();

private:
    struct Group
    {
        float centre[3], radius;
        float axis[3], sine; ///< Of the cone of all normals; 1 if it is wide.
        uint32_t first, end; ///< Of `corners`.
    };
    struct Round
    {
        std::weak_ptr<const Vs::BodyMesh> source;
        std::vector<Group> groups;
        std::vector<uint32_t> corners; ///< Three for each triangle that isn't flat.
    };

    const Round& roundOf(const std::shared_ptr<const Vs::BodyMesh>& mesh);
    static Round make(const Vs::BodyMesh& mesh);
    static Group groupOf(const Vs::BodyMesh& mesh, const std::vector<uint32_t>& corners, size_t first,
                         size_t end);

    std::unordered_map<const Vs::BodyMesh*, Round> m_meshes;
};

} // namespace Rendra
