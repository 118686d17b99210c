#include "Server/Body/Private/MeshSides.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <tuple>

namespace Vs {

namespace {

constexpr double kSharpCosine = 0.866; // 30 degrees, as lines are drawn
/// The height of a triangle, as a part of the mesh's size, that single precision leaves without a direction.
constexpr double kThin = 1e-6;

/// A side as it is found at one of its triangles.
struct Side
{
    uint32_t low, high; ///< Its nodes.
    uint32_t corner;    ///< 3 times the triangle and the corner where it begins.
};

std::vector<uint32_t> faceOfTriangles(const BodyMesh& mesh)
{
    std::vector<uint32_t> faces(mesh.triangles.size() / 3, 0);
    for (uint32_t i = 0; i < mesh.faces.size(); ++i)
        std::fill_n(faces.begin() + std::ptrdiff_t(mesh.faces[i].firstTriangle), mesh.faces[i].triangleCount,
                    i);
    return faces;
}

} // namespace

MeshSides::MeshSides(const BodyMesh& mesh)
{
    join(mesh);
    findThin();
    meet(mesh);
}

void MeshSides::join(const BodyMesh& mesh)
{
    const auto at = [&](uint32_t vertex) {
        const float* p = &mesh.positions[size_t(vertex) * 3];
        return std::tuple(p[0], p[1], p[2]);
    };
    std::vector<uint32_t> order(mesh.positions.size() / 3), nodeOf(order.size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) { return at(a) < at(b); });
    for (size_t i = 0; i < order.size(); ++i) {
        if (i == 0 || at(order[i]) != at(order[i - 1])) {
            const auto [x, y, z] = at(order[i]);
            m_places.emplace_back(x, y, z);
        }
        nodeOf[order[i]] = uint32_t(m_places.size() - 1);
    }
    m_nodes.reserve(mesh.triangles.size());
    BBox box;
    for (const uint32_t vertex : mesh.triangles) {
        m_nodes.push_back(nodeOf[vertex]);
        box.add(m_places[nodeOf[vertex]]);
    }
    m_size = box.diagonal();
}

GkVector3d MeshSides::area(size_t triangle) const
{
    const GkPoint3d& a = place(node(triangle, 0));
    return (place(node(triangle, 1)) - a).crossProduct(place(node(triangle, 2)) - a);
}

void MeshSides::findThin()
{
    m_thin.resize(triangles());
    for (size_t t = 0; t < triangles(); ++t) {
        double longest = 0;
        for (size_t k = 0; k < 3; ++k)
            longest = std::max(longest, place(node(t, k)).distanceTo(place(node(t, k + 1))));
        m_thin[t] = area(t).length() <= kThin * m_size * longest;
    }
}

bool MeshSides::bends(size_t first, size_t second, bool sameSense) const
{
    if (m_thin[first] || m_thin[second])
        return false;
    const double cosine = area(first).normal().dotProduct(area(second).normal());
    // Two that pass the side in the same sense look to opposite sides of the surface.
    return (sameSense ? -cosine : cosine) < kSharpCosine;
}

void MeshSides::meet(const BodyMesh& mesh)
{
    const std::vector<uint32_t> faces = faceOfTriangles(mesh);
    std::vector<Side> sides;
    sides.reserve(m_nodes.size());
    for (uint32_t t = 0; t < triangles(); ++t)
        for (uint32_t k = 0; k < 3; ++k) {
            const auto [low, high] = std::minmax({node(t, k), node(t, k + 1)});
            sides.push_back({low, high, 3 * t + k});
        }
    const auto key = [](const Side& side) { return std::tie(side.low, side.high, side.corner); };
    std::sort(sides.begin(), sides.end(), [&](const Side& a, const Side& b) { return key(a) < key(b); });
    m_neighbours.assign(m_nodes.size(), kNone);
    m_sharp.assign(m_nodes.size(), true);
    m_first.assign(m_nodes.size(), false);
    std::vector<uint32_t> corners;
    for (size_t i = 0, end = i; i < sides.size(); i = end) {
        while (end < sides.size() && sides[end].low == sides[i].low && sides[end].high == sides[i].high)
            ++end;
        corners.clear();
        for (size_t k = i; k < end; ++k)
            corners.push_back(sides[k].corner);
        // A thin triangle in a seam is in nobody's way.
        if (corners.size() > 2)
            std::stable_partition(corners.begin(), corners.end(),
                                  [&](uint32_t corner) { return !m_thin[corner / 3]; });
        meet(corners, faces);
    }
}

void MeshSides::meet(const std::vector<uint32_t>& corners, const std::vector<uint32_t>& faces)
{
    const uint32_t first = corners[0];
    m_first[first] = true;
    const auto whole =
        std::find_if(corners.begin(), corners.end(), [&](uint32_t corner) { return m_thin[corner / 3]; });
    for (auto thin = whole; corners.size() > 2 && thin != corners.end(); ++thin)
        m_neighbours[*thin] = first / 3;
    if (corners.size() != 2 && whole - corners.begin() != 2)
        return;
    const uint32_t second = corners[1];
    if (first / 3 == second / 3 || faces[first / 3] != faces[second / 3])
        return;
    m_neighbours[first] = second / 3;
    m_neighbours[second] = first / 3;
    m_sharp[first] = m_sharp[second] = bends(first / 3, second / 3, m_nodes[first] == m_nodes[second]);
}

} // namespace Vs
