#include "Server/Scene/Private/MeshTree.h"

#include "Server/Base/Require.h"
#include "Server/Scene/Private/Probe.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <unordered_map>

namespace Vs::Scene {

namespace {

/// Meshes with fewer triangles, edge segments and vertices are searched as quickly without a tree.
constexpr size_t kSmall = 96;
/// Trees of at most this many are built at once, which takes a few milliseconds.
constexpr size_t kMadeAtOnce = 30000;
/// After this many new trees, those whose meshes are gone are searched for.
constexpr size_t kCollectAfter = 256;

size_t sizeOf(const BodyMesh& mesh)
{
    return (mesh.triangles.size() + mesh.edgePoints.size() + mesh.vertexPoints.size()) / 3;
}

struct Entry
{
    std::weak_ptr<const BodyMesh> source;
    std::unique_ptr<const MeshTree> tree;
    std::future<std::unique_ptr<const MeshTree>> coming;
};

} // namespace

double meetTriangle(const BodyMesh& mesh, uint32_t triangle, const GkPoint3d& start,
                    const GkVector3d& direction)
{
    const auto corner = [&](size_t index) {
        const float* p = &mesh.positions[size_t(mesh.triangles[size_t(triangle) * 3 + index]) * 3];
        return GkPoint3d(p[0], p[1], p[2]);
    };
    const GkPoint3d a = corner(0);
    const GkVector3d ab = corner(1) - a, ac = corner(2) - a;
    const GkVector3d across = direction.crossProduct(ac);
    const double det = ab.dotProduct(across);
    if (det == 0)
        return -1;
    const GkVector3d from = start - a;
    const double u = from.dotProduct(across) / det;
    if (u < 0 || u > 1)
        return -1;
    const GkVector3d turned = from.crossProduct(ab);
    const double v = direction.dotProduct(turned) / det;
    if (v < 0 || u + v > 1)
        return -1;
    return ac.dotProduct(turned) / det;
}

bool hasOneSidedFaces(const BodyMesh& mesh)
{
    return std::ranges::any_of(mesh.finishes, &Finish::isOneSided);
}

bool isUnseen(const BodyMesh& mesh, uint32_t triangle, const GkVector3d& direction)
{
    const auto corner = [&](size_t index) {
        const float* p = &mesh.positions[size_t(mesh.triangles[size_t(triangle) * 3 + index]) * 3];
        return GkPoint3d(p[0], p[1], p[2]);
    };
    const GkVector3d outwards = (corner(1) - corner(0)).crossProduct(corner(2) - corner(0));
    return outwards.dotProduct(direction) > 0 && !mesh.faces.empty() &&
           mesh.finishOf(mesh.faces[faceOfTriangle(mesh, triangle)]).isOneSided();
}

namespace {

using Box = BoxTree::Box;

std::vector<Box> triangleBoxes(const BodyMesh& mesh)
{
    std::vector<Box> boxes(mesh.triangles.size() / 3, Box::nothing());
    for (size_t i = 0; i < boxes.size(); ++i)
        for (size_t corner = 0; corner < 3; ++corner)
            boxes[i].add(&mesh.positions[size_t(mesh.triangles[3 * i + corner]) * 3]);
    return boxes;
}

std::vector<Box> segmentBoxes(const BodyMesh& mesh)
{
    std::vector<Box> boxes(mesh.edgePoints.size() / 3, Box::nothing());
    for (size_t edge = 0; edge + 1 < mesh.edgeStarts.size(); ++edge)
        for (size_t point = mesh.edgeStarts[edge]; point + 1 < mesh.edgeStarts[edge + 1]; ++point) {
            boxes[point].add(&mesh.edgePoints[3 * point]);
            boxes[point].add(&mesh.edgePoints[3 * point + 3]);
        }
    return boxes;
}

std::vector<Box> vertexBoxes(const BodyMesh& mesh)
{
    std::vector<Box> boxes(mesh.vertexPoints.size() / 3, Box::nothing());
    for (size_t i = 0; i < boxes.size(); ++i)
        boxes[i].add(&mesh.vertexPoints[3 * i]);
    return boxes;
}

} // namespace

MeshTree::MeshTree(const BodyMesh& mesh)
    : m_triangles(triangleBoxes(mesh)), m_segments(segmentBoxes(mesh)), m_vertices(vertexBoxes(mesh))
{
}

bool MeshTree::meet(const BodyMesh& mesh, const GkPoint3d& start, const GkVector3d& direction, double limit,
                    Hit& hit) const
{
    const Probe ray{start, direction};
    bool found = false;
    m_triangles.search(
        limit, [&](const Box& box) { return ray.enter(box); },
        [&](uint32_t triangle) {
            const double at = meetTriangle(mesh, triangle, start, direction);
            if (at < 0 || at >= limit)
                return;
            limit = at;
            hit = {at, triangle};
            found = true;
        });
    return found;
}

int64_t edgeOfSegment(const BodyMesh& mesh, uint32_t point)
{
    const auto next = std::upper_bound(mesh.edgeStarts.begin(), mesh.edgeStarts.end(), point);
    const bool within = next != mesh.edgeStarts.begin() && next != mesh.edgeStarts.end() && point + 1 < *next;
    return within ? next - mesh.edgeStarts.begin() - 1 : -1;
}

uint32_t faceOfTriangle(const BodyMesh& mesh, uint32_t triangle)
{
    const auto next =
        std::upper_bound(mesh.faces.begin(), mesh.faces.end(), triangle,
                         [](uint32_t t, const BodyMesh::Face& face) { return t < face.firstTriangle; });
    return next == mesh.faces.begin() ? 0 : uint32_t(next - mesh.faces.begin() - 1);
}

bool MeshTree::isSmall(const BodyMesh& mesh)
{
    return sizeOf(mesh) < kSmall;
}

const MeshTree* MeshTree::of(const std::shared_ptr<const BodyMesh>& mesh)
{
    assertMainThread();
    require(mesh != nullptr, "a mesh that is searched is there");
    if (isSmall(*mesh))
        return nullptr;
    static std::unordered_map<const BodyMesh*, Entry> entries;
    static size_t added = 0;
    const auto found = entries.find(mesh.get());
    Entry& entry = found != entries.end() ? found->second : entries[mesh.get()];
    if (entry.source.expired()) { // new, or another mesh had the address before
        entry = Entry();
        entry.source = mesh;
        if (sizeOf(*mesh) <= kMadeAtOnce)
            entry.tree = std::make_unique<const MeshTree>(*mesh);
        else
            entry.coming =
                std::async(std::launch::async, [mesh] { return std::make_unique<const MeshTree>(*mesh); });
        if (++added % kCollectAfter == 0)
            std::erase_if(entries, [](const auto& each) { return each.second.source.expired(); });
        return entry.tree.get();
    }
    if (entry.coming.valid() && entry.coming.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        entry.tree = entry.coming.get();
    return entry.tree.get();
}

} // namespace Vs::Scene
