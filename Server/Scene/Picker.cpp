#include "Server/Scene/Picker.h"

#include "Server/Body/FinerMesh.h"
#include "Server/Scene/Private/PickSearch.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::Node;

namespace {

bool isRay(const GkPoint3d& start, const GkVector3d& direction)
{
    const auto finite = [](double x, double y, double z) {
        return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
    };
    return finite(start.x, start.y, start.z) && finite(direction.x, direction.y, direction.z) &&
           direction.lengthSqrd() > 0;
}

} // namespace

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
            const auto parts = searchedParts(body);
            const auto& mesh = parts ? parts : shownMesh(body.mesh());
            meetTriangles(mesh, local, limit, [&](uint32_t triangle, double along) {
                const auto [found, isNew] = nearest.try_emplace(faceOfTriangle(*mesh, triangle));
                if (isNew || along < found->second.along)
                    found->second = {path, parts, triangle, along};
            });
            for (const auto& [face, hit] : nearest)
                all.push_back(hit.point(ray));
        });
    search.search(root, reaching(ray));
    std::stable_sort(all.begin(), all.end(),
                     [](const PickedPoint& a, const PickedPoint& b) { return a.along < b.along; });
    return all;
}

} // namespace Vs::Scene
