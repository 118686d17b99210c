#include "Server/Scene/Private/PickSearch.h"

#include "Server/Body/PartsMesh.h"

#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;

std::shared_ptr<const BodyMesh> searchedParts(const BodyNode& body)
{
    std::shared_ptr<const BodyMesh> parts = partsMeshIfMade(body.mesh());
    const bool isReady =
        parts == body.mesh() || (parts && (MeshTree::isSmall(*parts) || MeshTree::of(parts)));
    return isReady ? parts : nullptr;
}

PickedPoint pointOf(const std::vector<const Node*>& path)
{
    PickedPoint picked;
    for (const Node* node : path) {
        picked.localToWorld = picked.localToWorld * node->transform();
        picked.path.emplace_back(const_cast<Node*>(node));
    }
    picked.path.erase(picked.path.begin());
    return picked;
}

PickedPoint SurfaceHit::point(const Probe& ray) const
{
    PickedPoint picked = pointOf(path);
    const BodyMesh& mesh = parts ? *parts : *cast<BodyNode>(path.back())->mesh();
    const Probe local = ray.transformed(picked.localToWorld.inverse());
    picked.along = along;
    picked.localPoint = local.start + local.direction * along;
    const auto corner = [&](size_t index) {
        const float* p = &mesh.positions[size_t(mesh.triangles[size_t(triangle) * 3 + index]) * 3];
        return GkPoint3d(p[0], p[1], p[2]);
    };
    picked.localNormal = (corner(1) - corner(0)).crossProduct(corner(2) - corner(0)).normal();
    if (picked.localNormal.dotProduct(local.direction) > 0)
        picked.localNormal = -picked.localNormal;
    if (parts && !mesh.faces.empty())
        picked.part = PickedPart{Part::Face, faceOfTriangle(mesh, triangle)};
    return picked;
}

std::optional<SurfaceHit> nearestHit(const Node& root, const Probe& ray, double limit)
{
    SurfaceHit hit;
    BodySearch search(
        limit, [&](const BodyNode& body, const Probe& local, const std::vector<const Node*>& path) {
            const double before = limit;
            const auto parts = searchedParts(body);
            meetTriangles(parts ? parts : body.mesh(), local, limit, [&](uint32_t triangle, double along) {
                limit = hit.along = along;
                hit.triangle = triangle;
            });
            if (limit < before) {
                hit.path = path;
                hit.parts = parts;
            }
        });
    search.search(root, ray);
    return hit.path.empty() ? std::nullopt : std::optional(std::move(hit));
}

} // namespace Vs::Scene
