#include "Server/Scene/Private/PickSearch.h"

#include "Server/Body/DividedMesh.h"
#include "Server/Body/FinerMesh.h"
#include "Server/Body/PartsMesh.h"
#include "Server/Scene/FinerMeshes.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;

namespace {

/// Those of bodies of triangles that were found ready: a search visits thousands of bodies with few meshes.
class ReadyParts
{
public:
    using Mesh = std::shared_ptr<const BodyMesh>;

    /// Null unless it is known to be ready.
    const Mesh& find(const Mesh& mesh)
    {
        static const Mesh none;
        const Entry& entry = at(mesh);
        // Distinguished by owner: another mesh may have the same address by now.
        return entry.source.owner_before(mesh) || mesh.owner_before(entry.source) ? none : entry.parts;
    }
    const Mesh& keep(const Mesh& mesh, Mesh parts)
    {
        for (Entry& entry : m_entries)
            if (entry.source.expired())
                entry = Entry();
        Entry& entry = at(mesh);
        entry = {mesh, std::move(parts)};
        return entry.parts;
    }

private:
    struct Entry
    {
        std::weak_ptr<const BodyMesh> source;
        Mesh parts;
    };
    Entry& at(const Mesh& mesh)
    {
        return m_entries[std::hash<const BodyMesh*>()(mesh.get()) / 64 % m_entries.size()];
    }

    std::array<Entry, 64> m_entries;
};

} // namespace

const std::shared_ptr<const BodyMesh>& searchedParts(const BodyNode& body)
{
    static auto* const ready = new ReadyParts;
    static const std::shared_ptr<const BodyMesh> none;
    const std::shared_ptr<const BodyMesh>& mesh = shownMesh(body.mesh());
    if (!isOfTriangles(*mesh))
        return mesh;
    if (const auto& known = ready->find(mesh))
        return known;
    std::shared_ptr<const BodyMesh> parts = partsMeshIfMade(mesh);
    const bool isReady = parts && (MeshTree::isSmall(*parts) || MeshTree::of(parts));
    return isReady ? ready->keep(mesh, std::move(parts)) : none;
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
    const BodyMesh& mesh = parts ? *parts : *shownMesh(cast<BodyNode>(path.back())->mesh());
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

Probe reaching(const Probe& ray)
{
    Probe wide = ray;
    wide.radius = std::max(wide.radius, FinerMeshes::get().reach() / ray.direction.length());
    return wide;
}

std::optional<SurfaceHit> nearestHit(const Node& root, const Probe& ray, double limit)
{
    SurfaceHit hit;
    BodySearch search(limit,
                      [&](const BodyNode& body, const Probe& local, const std::vector<const Node*>& path) {
                          const double before = limit;
                          const auto& parts = searchedParts(body);
                          meetTriangles(parts ? parts : shownMesh(body.mesh()), local, limit,
                                        [&](uint32_t triangle, double along) {
                                            limit = hit.along = along;
                                            hit.triangle = triangle;
                                        });
                          if (limit < before) {
                              hit.path = path;
                              hit.parts = parts;
                          }
                      });
    search.search(root, reaching(ray));
    return hit.path.empty() ? std::nullopt : std::optional(std::move(hit));
}

} // namespace Vs::Scene
