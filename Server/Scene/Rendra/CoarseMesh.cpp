#include "Server/Scene/Rendra/CoarseMesh.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace Rendra {

namespace {

struct Sum
{
    double x = 0, y = 0, z = 0;
    uint32_t count = 0;

    void add(const float* p)
    {
        x += p[0];
        y += p[1];
        z += p[2];
        ++count;
    }
};

/// Which of the six main directions a normal is nearest to: the two sides of a sharp edge mostly differ in
/// it.
uint64_t sideOf(const float* n)
{
    int axis = 0;
    for (int i = 1; i < 3; ++i)
        if (std::abs(n[i]) > std::abs(n[axis]))
            axis = i;
    return uint64_t(axis) * 2 + uint64_t(n[axis] < 0);
}

} // namespace

std::shared_ptr<const Vs::BodyMesh> coarseMesh(const Vs::BodyMesh& mesh, int cells)
{
    Vs::require(cells >= 1 && cells <= 1024, "a coarse mesh has from 1 to 1024 cells");
    const GkVector3d size = mesh.bounds.high() - mesh.bounds.low();
    const double longest = std::max({size.x, size.y, size.z});
    if (!(longest > 0) || mesh.normals.size() != mesh.positions.size())
        return nullptr;
    const double perCell = cells / longest;
    const double low[3] = {mesh.bounds.low().x, mesh.bounds.low().y, mesh.bounds.low().z};

    // All vertices of a cell get one position, whatever their normals, so that no gaps open.
    const size_t vertices = mesh.positions.size() / 3;
    std::vector<uint32_t> cellOf(vertices);
    std::vector<Sum> places;
    std::unordered_map<uint32_t, uint32_t> numbers;
    for (size_t i = 0; i < vertices; ++i) {
        uint32_t key = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const double at = (mesh.positions[3 * i + size_t(axis)] - low[axis]) * perCell;
            key = key << 10 | uint32_t(std::clamp(at, 0.0, double(std::min(cells, 1024) - 1)));
        }
        const auto [found, isNew] = numbers.try_emplace(key, uint32_t(places.size()));
        if (isNew)
            places.emplace_back();
        cellOf[i] = found->second;
        places[cellOf[i]].add(&mesh.positions[3 * i]);
    }

    auto made = std::make_shared<Vs::BodyMesh>();
    made->bounds = mesh.bounds;
    made->colours = mesh.colours;
    std::unordered_map<uint64_t, uint32_t> corners;
    std::vector<Sum> normals;
    const auto cornerOf = [&](uint32_t vertex, size_t face) {
        const uint64_t side = sideOf(&mesh.normals[3 * size_t(vertex)]);
        const uint64_t colour = uint64_t(mesh.faces[face].colour) + 1;
        const uint64_t key = uint64_t(cellOf[vertex]) | side << 32 | colour << 36;
        const auto [found, isNew] = corners.try_emplace(key, uint32_t(normals.size()));
        if (isNew) {
            normals.emplace_back();
            const Sum& place = places[cellOf[vertex]];
            for (const double value : {place.x, place.y, place.z})
                made->positions.push_back(float(value / place.count));
        }
        normals[found->second].add(&mesh.normals[3 * size_t(vertex)]);
        return found->second;
    };
    const size_t most = mesh.triangles.size() / 3 * 2;
    for (size_t face = 0; face < mesh.faces.size(); ++face) {
        const Vs::BodyMesh::Face& source = mesh.faces[face];
        const auto first = uint32_t(made->triangles.size() / 3);
        const size_t end =
            std::min(mesh.triangles.size(), (size_t(source.firstTriangle) + source.triangleCount) * 3);
        for (size_t i = size_t(source.firstTriangle) * 3; i + 2 < end; i += 3) {
            const uint32_t *t = &mesh.triangles[i], a = cellOf[t[0]], b = cellOf[t[1]], c = cellOf[t[2]];
            if (a == b || b == c || c == a)
                continue;
            for (int corner = 0; corner < 3; ++corner)
                made->triangles.push_back(cornerOf(t[corner], face));
        }
        if (made->triangles.size() > most)
            return nullptr;
        made->faces.push_back({first, uint32_t(made->triangles.size() / 3) - first, source.colour});
    }
    for (const Sum& n : normals) {
        const double length = std::max(std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z), 1e-12);
        for (const double value : {n.x, n.y, n.z})
            made->normals.push_back(float(value / length));
    }
    return made;
}

} // namespace Rendra
