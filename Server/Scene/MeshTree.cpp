#include "Server/Scene/MeshTree.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <future>
#include <limits>
#include <unordered_map>

namespace Vs::Scene {

namespace {

constexpr size_t kTrianglesOfLeaf = 8;
/// Meshes of fewer triangles are asked one by one as quickly as their tree could be.
constexpr size_t kFewTriangles = 64;
/// Trees of no more triangles are made at once; that takes some milliseconds.
constexpr size_t kMadeAtOnce = 30000;
/// After so many new trees it is looked which ones are of meshes that are gone.
constexpr size_t kCollectAfter = 256;

/// The lowest ten bits with two zeros between each.
uint32_t spread(uint32_t bits)
{
    bits = (bits | bits << 16) & 0x030000FF;
    bits = (bits | bits << 8) & 0x0300F00F;
    bits = (bits | bits << 4) & 0x030C30C3;
    return (bits | bits << 2) & 0x09249249;
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

// Triangles are sorted along a curve that fills the space (Morton, 1966); the tree above has one shape for
// each count and needs no links.
MeshTree::MeshTree(const BodyMesh& mesh)
{
    const size_t count = mesh.triangles.size() / 3;
    const double low[3] = {mesh.bounds.low().x, mesh.bounds.low().y, mesh.bounds.low().z};
    const GkVector3d size = mesh.bounds.high() - mesh.bounds.low();
    const double scale[3] = {1023 / std::max(size.x, 1e-300), 1023 / std::max(size.y, 1e-300),
                             1023 / std::max(size.z, 1e-300)};
    std::vector<uint64_t> keys(count);
    for (size_t i = 0; i < count; ++i) {
        uint32_t key = 0;
        for (size_t axis = 0; axis < 3; ++axis) {
            double sum = 0;
            for (size_t corner = 0; corner < 3; ++corner)
                sum += mesh.positions[size_t(mesh.triangles[3 * i + corner]) * 3 + axis];
            const double at = (sum / 3 - low[axis]) * scale[axis];
            key |= spread(uint32_t(std::clamp(at, 0.0, 1023.0))) << axis;
        }
        keys[i] = uint64_t(key) << 32 | i;
    }
    std::sort(keys.begin(), keys.end());
    m_order.resize(count);
    for (size_t i = 0; i < count; ++i)
        m_order[i] = uint32_t(keys[i]);

    m_leaves = std::bit_ceil(std::max<size_t>(1, (count + kTrianglesOfLeaf - 1) / kTrianglesOfLeaf));
    constexpr float kMost = std::numeric_limits<float>::max();
    m_boxes.assign(2 * m_leaves - 1, {{kMost, kMost, kMost}, {-kMost, -kMost, -kMost}});
    for (size_t i = 0; i < count; ++i) {
        Box& box = m_boxes[m_leaves - 1 + i / kTrianglesOfLeaf];
        for (size_t corner = 0; corner < 3; ++corner) {
            const float* p = &mesh.positions[size_t(mesh.triangles[size_t(m_order[i]) * 3 + corner]) * 3];
            for (int axis = 0; axis < 3; ++axis) {
                box.low[axis] = std::min(box.low[axis], p[axis]);
                box.high[axis] = std::max(box.high[axis], p[axis]);
            }
        }
    }
    for (size_t i = m_leaves - 1; i-- > 0;)
        for (int axis = 0; axis < 3; ++axis) {
            const Box &left = m_boxes[2 * i + 1], &right = m_boxes[2 * i + 2];
            m_boxes[i].low[axis] = std::min(left.low[axis], right.low[axis]);
            m_boxes[i].high[axis] = std::max(left.high[axis], right.high[axis]);
        }
}

bool MeshTree::meet(const BodyMesh& mesh, const GkPoint3d& start, const GkVector3d& direction, double limit,
                    Hit& hit) const
{
    const double from[3] = {start.x, start.y, start.z}, along[3] = {direction.x, direction.y, direction.z};
    // Where the ray enters the box; infinity if it doesn't before the nearest hit so far.
    const auto entry = [&](const Box& box) {
        double first = 0, last = limit;
        for (int axis = 0; axis < 3; ++axis) {
            if (along[axis] == 0) {
                if (from[axis] < box.low[axis] || from[axis] > box.high[axis])
                    return std::numeric_limits<double>::infinity();
                continue;
            }
            const double a = (box.low[axis] - from[axis]) / along[axis];
            const double b = (box.high[axis] - from[axis]) / along[axis];
            first = std::max(first, std::min(a, b));
            last = std::min(last, std::max(a, b));
        }
        // A flat box has no depth, and rounding may turn what is left around.
        return first <= last * (1 + 1e-12) + 1e-12 ? first : std::numeric_limits<double>::infinity();
    };
    struct Open
    {
        size_t node;
        double entry;
    };
    Open open[80];
    size_t count = 0;
    bool found = false;
    if (const double at = entry(m_boxes[0]); std::isfinite(at))
        open[count++] = {0, at};
    while (count > 0) {
        const Open top = open[--count];
        if (top.entry > limit)
            continue;
        if (top.node + 1 >= m_leaves) {
            const size_t first = (top.node + 1 - m_leaves) * kTrianglesOfLeaf;
            const size_t end = std::min(first + kTrianglesOfLeaf, m_order.size());
            for (size_t i = first; i < end; ++i) {
                const double at = meetTriangle(mesh, m_order[i], start, direction);
                if (at < 0 || at >= limit)
                    continue;
                limit = at;
                hit = {at, m_order[i]};
                found = true;
            }
            continue;
        }
        Open near{2 * top.node + 1, entry(m_boxes[2 * top.node + 1])};
        Open far{2 * top.node + 2, entry(m_boxes[2 * top.node + 2])};
        if (far.entry < near.entry)
            std::swap(near, far);
        if (std::isfinite(far.entry))
            open[count++] = far;
        if (std::isfinite(near.entry))
            open[count++] = near;
    }
    return found;
}

const MeshTree* MeshTree::of(const std::shared_ptr<const BodyMesh>& mesh)
{
    const size_t triangles = mesh->triangles.size() / 3;
    if (triangles < kFewTriangles)
        return nullptr;
    static std::unordered_map<const BodyMesh*, Entry> entries;
    static size_t added = 0;
    const auto found = entries.find(mesh.get());
    Entry& entry = found != entries.end() ? found->second : entries[mesh.get()];
    if (entry.source.expired()) { // new, or another mesh stood there before
        entry = Entry();
        entry.source = mesh;
        if (triangles <= kMadeAtOnce)
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
