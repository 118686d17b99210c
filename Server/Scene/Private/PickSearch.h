#pragma once

// Shared by the searches of Picker.h; not for others.

#include "Server/Scene/Picker.h"
#include "Server/Scene/Private/MeshTree.h"
#include "Server/Scene/Private/NodeTree.h"

namespace Vs::Scene {

/// Where a ray hits a body.
struct SurfaceHit
{
    std::vector<const Rendra::Graphics::Node*> path; ///< With the node that was searched.
    /// The mesh in which the triangle has its number; null for the body's own until its parts are known.
    std::shared_ptr<const BodyMesh> parts;
    uint32_t triangle = 0;
    double along = 0;

    /// `ray` is the one that hit it, in the coordinates above the searched node.
    PickedPoint point(const Probe& ray) const;
};

/// The mesh in which a body's parts are found; null until there is one that is searched as quickly as the
/// body's own. The reference is valid until the next call. Main thread only.
const std::shared_ptr<const BodyMesh>& searchedParts(const Rendra::Graphics::BodyNode& body);

/// Calls `take(triangle, along)` for the triangles of a mesh that the ray hits before `limit`, where they are
/// seen.
template <class Take>
void meetTriangles(const std::shared_ptr<const BodyMesh>& triangles, const Probe& ray, const double& limit,
                   Take&& take)
{
    const BodyMesh& mesh = *triangles;
    const bool oneSided = hasOneSidedFaces(mesh);
    const auto ask = [&](uint32_t triangle) {
        const double along = meetTriangle(mesh, triangle, ray.start, ray.direction);
        if (along >= 0 && along < limit && !(oneSided && isUnseen(mesh, triangle, ray.direction)))
            take(triangle, along);
    };
    if (const MeshTree* tree = MeshTree::of(triangles))
        tree->triangles().search(
            limit, [&](const BoxTree::Box& box) { return ray.enter(box); }, ask);
    else
        for (uint32_t i = 0; i < mesh.triangles.size() / 3; ++i)
            ask(i);
}

/// The ray with as much space around it as finer meshes may reach beyond the bounds of their nodes.
Probe reaching(const Probe& ray);

/// The nearest before `limit`.
std::optional<SurfaceHit> nearestHit(const Rendra::Graphics::Node& root, const Probe& ray, double limit);

/// A point with only the path and its transformation.
PickedPoint pointOf(const std::vector<const Rendra::Graphics::Node*>& path);

} // namespace Vs::Scene
