#include "Server/Body/DividedMesh.h"

#include "Server/Body/Private/EdgeChains.h"

#include <algorithm>
#include <numeric>

namespace Vs {

namespace {

/// More than so many parts, or so few triangles for each, and it is roughness that they show.
constexpr size_t kFewParts = 500, kMostParts = 100'000, kTrianglesOfPart = 3;

void add(std::vector<float>& points, const GkPoint3d& p)
{
    for (const double value : {p.x, p.y, p.z})
        points.push_back(float(value));
}

bool isRough(size_t parts, size_t triangles)
{
    return parts > kMostParts || (parts > kFewParts && parts * kTrianglesOfPart > triangles);
}

void withoutLines(BodyMesh& mesh)
{
    mesh.edgePoints.clear();
    mesh.edgeStarts.assign(1, 0);
    mesh.vertexPoints.clear();
}

/// Puts the triangles of each region together.
void sortTriangles(const BodyMesh& mesh, const MeshRegions& regions, BodyMesh& divided)
{
    std::vector<int32_t> colours(regions.count, -1);
    for (const BodyMesh::Face& face : mesh.faces)
        for (uint32_t t = face.firstTriangle; t < face.firstTriangle + face.triangleCount; ++t)
            colours[regions.ofTriangle[t]] = face.colour;
    std::vector<uint32_t> order(regions.ofTriangle.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](uint32_t a, uint32_t b) { return regions.ofTriangle[a] < regions.ofTriangle[b]; });
    divided.faces.clear();
    divided.triangles.clear();
    for (uint32_t i = 0; i < order.size(); ++i) {
        const uint32_t region = regions.ofTriangle[order[i]];
        if (region == divided.faces.size())
            divided.faces.push_back({i, 0, colours[region]});
        ++divided.faces.back().triangleCount;
        const auto first = mesh.triangles.begin() + std::ptrdiff_t(order[i]) * 3;
        divided.triangles.insert(divided.triangles.end(), first, first + 3);
    }
}

} // namespace

bool isOfTriangles(const BodyMesh& mesh)
{
    return mesh.vertexPoints.empty() && !mesh.triangles.empty();
}

BodyMesh dividedMesh(const BodyMesh& mesh)
{
    BodyMesh divided = mesh;
    withoutLines(divided);
    const MeshSides sides(mesh);
    const MeshRegions regions(sides);
    const EdgeChains chains(sides, regions);
    if (isRough(std::max<size_t>(regions.count, chains.lines.size()), sides.triangles()))
        return divided;
    sortTriangles(mesh, regions, divided);
    divided.edgeStarts.clear();
    for (const std::vector<uint32_t>& line : chains.lines) {
        divided.edgeStarts.push_back(uint32_t(divided.edgePoints.size() / 3));
        for (const uint32_t node : line)
            add(divided.edgePoints, sides.place(node));
    }
    divided.edgeStarts.push_back(uint32_t(divided.edgePoints.size() / 3));
    for (const uint32_t node : chains.corners)
        add(divided.vertexPoints, sides.place(node));
    return divided;
}

} // namespace Vs
