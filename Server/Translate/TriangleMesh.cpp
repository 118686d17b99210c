#include "Server/Translate/TriangleMesh.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <xxhash.h>

namespace Vs::Translate {

namespace {

using Vertex = JoinedTriangles::Vertex;
using Normal = JoinedTriangles::Normal;

constexpr float kSmoothCosine = 0.866f; // 30 degrees

Normal areaVector(const float* a, const float* b, const float* c)
{
    const double ux = double(b[0]) - a[0], uy = double(b[1]) - a[1], uz = double(b[2]) - a[2];
    const double vx = double(c[0]) - a[0], vy = double(c[1]) - a[1], vz = double(c[2]) - a[2];
    return {float(uy * vz - uz * vy), float(uz * vx - ux * vz), float(ux * vy - uy * vx)};
}

Normal unit(const Normal& n)
{
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    return length > 0 ? Normal{n[0] / length, n[1] / length, n[2] / length} : Normal{0, 0, 1};
}

float dot(const Normal& a, const Normal& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// Finds the node at a position. Slots in one array, without an allocation for each node: there are millions.
class NodeTable
{
public:
    explicit NodeTable(std::vector<Vertex>& nodes) : m_nodes(nodes) {}

    uint32_t nodeAt(const float* p)
    {
        // Adding zero turns -0 into 0, which is the same position.
        const Vertex vertex{p[0] + 0.0f, p[1] + 0.0f, p[2] + 0.0f};
        if (m_nodes.size() * 2 >= m_slots.size())
            grow();
        uint32_t& slot = slotOf(vertex);
        if (slot == kFree) {
            slot = uint32_t(m_nodes.size());
            m_nodes.push_back(vertex);
        }
        return slot;
    }

private:
    static constexpr uint32_t kFree = UINT32_MAX;

    uint32_t& slotOf(const Vertex& vertex)
    {
        const size_t mask = m_slots.size() - 1;
        for (size_t at = XXH3_64bits(vertex.data(), sizeof vertex) & mask;; at = (at + 1) & mask)
            if (m_slots[at] == kFree || m_nodes[m_slots[at]] == vertex)
                return m_slots[at];
    }

    void grow()
    {
        m_slots.assign(std::max<size_t>(64, m_slots.size() * 4), kFree);
        for (uint32_t node = 0; node < m_nodes.size(); ++node)
            slotOf(m_nodes[node]) = node;
    }

    std::vector<Vertex>& m_nodes;
    std::vector<uint32_t> m_slots;
};

} // namespace

JoinedTriangles joinTriangles(const std::vector<float>& positions, const std::vector<uint32_t>& triangles)
{
    JoinedTriangles joined;
    NodeTable table(joined.nodes);
    std::vector<uint32_t> nodeOf(positions.size() / 3);
    for (size_t i = 0; i < nodeOf.size(); ++i)
        nodeOf[i] = table.nodeAt(&positions[3 * i]);
    joined.triangles.reserve(triangles.size() / 3);
    joined.areas.reserve(triangles.size() / 3);
    for (size_t i = 0; i + 3 <= triangles.size(); i += 3) {
        const uint32_t a = triangles[i], b = triangles[i + 1], c = triangles[i + 2];
        joined.triangles.push_back({nodeOf[a], nodeOf[b], nodeOf[c]});
        joined.areas.push_back(
            areaVector(&positions[size_t(a) * 3], &positions[size_t(b) * 3], &positions[size_t(c) * 3]));
    }
    return joined;
}

JoinedTriangles joinTriangles(const std::vector<float>& corners)
{
    std::vector<uint32_t> triangles(corners.size() / 9 * 3);
    std::iota(triangles.begin(), triangles.end(), 0u);
    return joinTriangles(corners, triangles);
}

void addVertices(const JoinedTriangles& joined, BodyMesh& mesh)
{
    std::vector<uint32_t> firstCorner(joined.nodes.size() + 1, 0);
    for (const auto& triangle : joined.triangles)
        for (const uint32_t node : triangle)
            ++firstCorner[node + 1];
    for (size_t i = 1; i < firstCorner.size(); ++i)
        firstCorner[i] += firstCorner[i - 1];
    std::vector<uint32_t> corners(joined.triangles.size() * 3);
    std::vector<uint32_t> fill(firstCorner.begin(), firstCorner.end() - 1);
    for (uint32_t t = 0; t < joined.triangles.size(); ++t)
        for (size_t k = 0; k < 3; ++k)
            corners[fill[joined.triangles[t][k]]++] = t * 3 + uint32_t(k);

    mesh.triangles.resize(corners.size());
    // A node with very many triangles is a fan; comparing each with each would take for ever.
    constexpr uint32_t kMostCompared = 64;
    for (uint32_t node = 0; node < joined.nodes.size(); ++node) {
        const uint32_t begin = firstCorner[node], end = firstCorner[node + 1];
        std::vector<std::pair<Normal, uint32_t>> made;
        for (uint32_t i = begin; i < end; ++i) {
            const Normal own = unit(joined.areas[corners[i] / 3]);
            Normal sum{};
            const uint32_t from = end - begin > kMostCompared ? i : begin;
            const uint32_t to = end - begin > kMostCompared ? i + 1 : end;
            for (uint32_t k = from; k < to; ++k) {
                const Normal& other = joined.areas[corners[k] / 3];
                if (dot(own, unit(other)) >= kSmoothCosine)
                    for (size_t axis = 0; axis < 3; ++axis)
                        sum[axis] += other[axis];
            }
            const Normal normal = unit(sum);
            auto same = std::find_if(made.begin(), made.end(),
                                     [&](const auto& entry) { return dot(entry.first, normal) > 0.9999f; });
            if (same == made.end()) {
                made.emplace_back(normal, uint32_t(mesh.positions.size() / 3));
                same = made.end() - 1;
                mesh.positions.insert(mesh.positions.end(), joined.nodes[node].begin(),
                                      joined.nodes[node].end());
                mesh.normals.insert(mesh.normals.end(), normal.begin(), normal.end());
            }
            mesh.triangles[corners[i]] = same->second;
        }
        mesh.bounds.add({joined.nodes[node][0], joined.nodes[node][1], joined.nodes[node][2]});
    }
}

void addEdgeLines(const JoinedTriangles& joined, BodyMesh& mesh)
{
    /// A side of a triangle, keyed by the lower of its two nodes.
    struct Side
    {
        uint32_t high, triangle;
    };
    const auto eachSide = [&](auto&& take) {
        for (uint32_t t = 0; t < joined.triangles.size(); ++t)
            for (size_t k = 0; k < 3; ++k) {
                const auto [low, high] =
                    std::minmax(joined.triangles[t][k], joined.triangles[t][(k + 1) % 3]);
                if (low != high)
                    take(low, Side{high, t});
            }
    };
    std::vector<uint32_t> first(joined.nodes.size() + 1, 0);
    eachSide([&](uint32_t low, const Side&) { ++first[low + 1]; });
    std::partial_sum(first.begin(), first.end(), first.begin());
    std::vector<Side> sides(first.back());
    std::vector<uint32_t> fill(first.begin(), first.end() - 1);
    eachSide([&](uint32_t low, const Side& side) { sides[fill[low]++] = side; });
    for (uint32_t low = 0; low < joined.nodes.size(); ++low) {
        const uint32_t last = first[low + 1];
        std::sort(sides.begin() + first[low], sides.begin() + last, [](const Side& a, const Side& b) {
            return std::pair(a.high, a.triangle) < std::pair(b.high, b.triangle);
        });
        for (uint32_t i = first[low], end = i; i < last; i = end) {
            while (end < last && sides[end].high == sides[i].high)
                ++end;
            const bool smooth =
                end - i == 2 && dot(unit(joined.areas[sides[i].triangle]),
                                    unit(joined.areas[sides[i + 1].triangle])) >= kSmoothCosine;
            if (smooth)
                continue;
            mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
            for (const uint32_t node : {low, sides[i].high})
                mesh.edgePoints.insert(mesh.edgePoints.end(), joined.nodes[node].begin(),
                                       joined.nodes[node].end());
        }
    }
    mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
}

} // namespace Vs::Translate
