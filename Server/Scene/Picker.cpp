#include "Server/Scene/Picker.h"

#include "Server/Scene/Private/MeshTree.h"
#include "Server/Scene/Private/PickSearch.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;

namespace {

bool isRay(const GkPoint3d& start, const GkVector3d& direction)
{
    const auto finite = [](double x, double y, double z) {
        return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
    };
    return finite(start.x, start.y, start.z) && finite(direction.x, direction.y, direction.z) &&
           direction.lengthSqrd() > 0;
}

/// Calls `take(triangle, along)` for the triangles that the ray meets before `limit`.
template <class Take>
void meetTriangles(const BodyNode& body, const Probe& ray, const double& limit, Take&& take)
{
    const BodyMesh& mesh = *body.mesh();
    const auto ask = [&](uint32_t triangle) {
        const double along = meetTriangle(mesh, triangle, ray.start, ray.direction);
        if (along >= 0 && along < limit)
            take(triangle, along);
    };
    if (const MeshTree* tree = MeshTree::of(body.mesh()))
        tree->triangles().search(
            limit, [&](const BoxTree::Box& box) { return ray.enter(box); }, ask);
    else
        for (uint32_t i = 0; i < mesh.triangles.size() / 3; ++i)
            ask(i);
}

} // namespace

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
    const BodyMesh& mesh = *cast<BodyNode>(path.back())->mesh();
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
    if (!mesh.faces.empty())
        picked.part = PickedPart{Part::Face, faceOfTriangle(mesh, triangle)};
    return picked;
}

std::optional<SurfaceHit> nearestHit(const Node& root, const Probe& ray, double limit)
{
    SurfaceHit hit;
    BodySearch search(limit,
                      [&](const BodyNode& body, const Probe& local, const std::vector<const Node*>& path) {
                          const double before = limit;
                          meetTriangles(body, local, limit, [&](uint32_t triangle, double along) {
                              limit = hit.along = along;
                              hit.triangle = triangle;
                          });
                          if (limit < before)
                              hit.path = path;
                      });
    search.search(root, ray);
    return hit.path.empty() ? std::nullopt : std::optional(std::move(hit));
}

std::optional<PickedPoint> pick(const Node& root, const GkPoint3d& start, const GkVector3d& direction)
{
    if (!isRay(start, direction))
        return std::nullopt;
    const Probe ray{start, direction};
    const auto hit = nearestHit(root, ray, BoxTree::kNever);
    return hit ? std::optional(hit->point(ray)) : std::nullopt;
}

std::vector<PickedPoint> pickAll(const Node& root, const GkPoint3d& start, const GkVector3d& direction)
{
    std::vector<PickedPoint> all;
    if (!isRay(start, direction))
        return all;
    const Probe ray{start, direction};
    const double limit = BoxTree::kNever;
    BodySearch search(
        limit, [&](const BodyNode& body, const Probe& local, const std::vector<const Node*>& path) {
            std::map<uint32_t, SurfaceHit> nearest;
            meetTriangles(body, local, limit, [&](uint32_t triangle, double along) {
                const auto [found, isNew] = nearest.try_emplace(faceOfTriangle(*body.mesh(), triangle));
                if (isNew || along < found->second.along)
                    found->second = {path, triangle, along};
            });
            for (const auto& [face, hit] : nearest)
                all.push_back(hit.point(ray));
        });
    search.search(root, ray);
    std::stable_sort(all.begin(), all.end(),
                     [](const PickedPoint& a, const PickedPoint& b) { return a.along < b.along; });
    return all;
}

} // namespace Vs::Scene
