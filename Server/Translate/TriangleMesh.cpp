#include "Server/Translate/TriangleMesh.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <unordered_map>
#include <xxhash.h>

namespace Vs::Translate {

namespace {

using Vertex = JoinedTriangles::Vertex;
using Normal = JoinedTriangles::Normal;

struct VertexHash
{
    size_t operator()(const Vertex& v) const { return XXH3_64bits(v.data(), sizeof v); }
};

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

} // namespace

JoinedTriangles joinTriangles(const std::vector<float>& corners)
{
    JoinedTriangles joined;
    std::unordered_map<Vertex, uint32_t, VertexHash> index;
    index.reserve(corners.size() / 12);
    for (size_t i = 0; i + 9 <= corners.size(); i += 9) {
        std::array<uint32_t, 3> triangle;
        for (int k = 0; k < 3; ++k) {
            const float* p = &corners[i + 3 * k];
            // Adding zero turns -0 into 0, which is the same place.
            const Vertex vertex{p[0] + 0.0f, p[1] + 0.0f, p[2] + 0.0f};
            const auto [entry, fresh] = index.try_emplace(vertex, uint32_t(joined.nodes.size()));
            if (fresh)
                joined.nodes.push_back(vertex);
            triangle[k] = entry->second;
        }
        joined.triangles.push_back(triangle);
        joined.areas.push_back(areaVector(&corners[i], &corners[i + 3], &corners[i + 6]));
    }
    return joined;
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
        for (int k = 0; k < 3; ++k)
            corners[fill[joined.triangles[t][k]]++] = t * 3 + k;

    mesh.triangles.resize(corners.size());
    // A node of very many triangles is a fan; comparing each with each would take for ever.
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
                    for (int axis = 0; axis < 3; ++axis)
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
    struct Side
    {
        uint32_t low, high, triangle;
    };
    std::vector<Side> sides;
    sides.reserve(joined.triangles.size() * 3);
    for (uint32_t t = 0; t < joined.triangles.size(); ++t)
        for (int k = 0; k < 3; ++k) {
            const auto [low, high] = std::minmax(joined.triangles[t][k], joined.triangles[t][(k + 1) % 3]);
            if (low != high)
                sides.push_back({low, high, t});
        }
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
        return std::tie(a.low, a.high, a.triangle) < std::tie(b.low, b.high, b.triangle);
    });
    for (size_t i = 0; i < sides.size();) {
        size_t end = i + 1;
        while (end < sides.size() && sides[end].low == sides[i].low && sides[end].high == sides[i].high)
            ++end;
        const bool smooth = end - i == 2 && dot(unit(joined.areas[sides[i].triangle]),
                                                unit(joined.areas[sides[i + 1].triangle])) >= kSmoothCosine;
        if (!smooth) {
            mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
            for (const uint32_t node : {sides[i].low, sides[i].high})
                mesh.edgePoints.insert(mesh.edgePoints.end(), joined.nodes[node].begin(),
                                       joined.nodes[node].end());
        }
        i = end;
    }
    mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
}

} // namespace Vs::Translate
