#include "Server/Scene/Rendra/CoarseMesh.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
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

/// Which place each vertex is at. The vertices of a cell share the mean of theirs.
struct Clusters
{
    std::vector<uint32_t> placeOf;
    std::vector<Sum> places;
};

/// All vertices of a cell get one place, whatever their normals, so that no gaps open.
Clusters gridOf(const Vs::BodyMesh& mesh, double perCell, int cells)
{
    const double low[3] = {mesh.bounds.low().x, mesh.bounds.low().y, mesh.bounds.low().z};
    Clusters grid;
    grid.placeOf.resize(mesh.positions.size() / 3);
    std::unordered_map<uint32_t, uint32_t> numbers;
    for (size_t i = 0; i < grid.placeOf.size(); ++i) {
        uint32_t key = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const double at = (mesh.positions[3 * i + size_t(axis)] - low[axis]) * perCell;
            key = key << 10 | uint32_t(std::clamp(at, 0.0, double(std::min(cells, 1024) - 1)));
        }
        const auto [found, isNew] = numbers.try_emplace(key, uint32_t(grid.places.size()));
        if (isNew)
            grid.places.emplace_back();
        grid.placeOf[i] = found->second;
        grid.places[found->second].add(&mesh.positions[3 * i]);
    }
    return grid;
}

/// A cell is smooth if its normals differ from their mean by at most 15 degrees, or 26 where there are so few
/// cells that nothing of the body's form is smaller than the pixels of its picture, and if it is flat: no
/// vertex is farther from the plane of the means than this part of the smallest cells.
constexpr double kSmoothCosine = 0.966, kSmoothCosineOfSmall = 0.90, kFlat = 0.08;
constexpr int kSmall = 16;

/// Which cells are smooth, flat and of one colour.
std::vector<bool> smoothCells(const Vs::BodyMesh& mesh, const Clusters& grid, double cosine, double flat)
{
    std::vector<Sum> normals(grid.places.size());
    for (size_t i = 0; i < grid.placeOf.size(); ++i)
        normals[grid.placeOf[i]].add(&mesh.normals[3 * i]);
    std::vector<bool> smooth(grid.places.size(), true);
    for (size_t i = 0; i < grid.placeOf.size(); ++i) {
        const Sum &sum = normals[grid.placeOf[i]], &place = grid.places[grid.placeOf[i]];
        const float *n = &mesh.normals[3 * i], *p = &mesh.positions[3 * i];
        const double length = std::sqrt(sum.x * sum.x + sum.y * sum.y + sum.z * sum.z);
        const double away = (p[0] - place.x / place.count) * sum.x + (p[1] - place.y / place.count) * sum.y +
                            (p[2] - place.z / place.count) * sum.z;
        if (n[0] * sum.x + n[1] * sum.y + n[2] * sum.z < cosine * length || std::abs(away) > flat * length)
            smooth[grid.placeOf[i]] = false;
    }
    if (mesh.colours.empty())
        return smooth;
    constexpr int32_t kUnseen = -2;
    std::vector<int32_t> colours(grid.places.size(), kUnseen);
    for (const Vs::BodyMesh::Face& face : mesh.faces) {
        const size_t end =
            std::min(mesh.triangles.size(), (size_t(face.firstTriangle) + face.triangleCount) * 3);
        for (size_t i = size_t(face.firstTriangle) * 3; i < end; ++i) {
            const uint32_t cell = grid.placeOf[mesh.triangles[i]];
            if (colours[cell] != kUnseen && colours[cell] != face.colour)
                smooth[cell] = false;
            colours[cell] = face.colour;
        }
    }
    return smooth;
}

/// Large cells where all is smooth, smaller ones elsewhere, and a place for each vertex that is in none. From
/// `single` on, places are those of single vertices.
Clusters smoothClusters(const Vs::BodyMesh& mesh, double perCell, int cells, size_t& single)
{
    constexpr uint32_t kNone = UINT32_MAX;
    const double cosine = cells <= kSmall ? kSmoothCosineOfSmall : kSmoothCosine;
    Clusters all;
    all.placeOf.assign(mesh.positions.size() / 3, kNone);
    for (int larger = 8; larger >= 1; larger /= 2) {
        const Clusters grid = gridOf(mesh, perCell / larger, (cells + larger - 1) / larger);
        const std::vector<bool> smooth = smoothCells(mesh, grid, cosine, kFlat / perCell);
        std::vector<uint32_t> numbers(grid.places.size(), kNone);
        for (size_t i = 0; i < grid.placeOf.size(); ++i) {
            if (all.placeOf[i] != kNone || !smooth[grid.placeOf[i]])
                continue;
            uint32_t& number = numbers[grid.placeOf[i]];
            if (number == kNone) {
                number = uint32_t(all.places.size());
                all.places.emplace_back();
            }
            all.placeOf[i] = number;
            all.places[number].add(&mesh.positions[3 * i]);
        }
    }
    single = all.places.size();
    std::map<std::array<float, 3>, uint32_t> numbers;
    for (size_t i = 0; i < all.placeOf.size(); ++i) {
        if (all.placeOf[i] != kNone)
            continue;
        const float* p = &mesh.positions[3 * i];
        const auto [found, isNew] = numbers.try_emplace({p[0], p[1], p[2]}, uint32_t(all.places.size()));
        if (isNew) {
            all.places.emplace_back();
            all.places.back().add(p);
        }
        all.placeOf[i] = found->second;
    }
    return all;
}

std::shared_ptr<const Vs::BodyMesh> clustered(const Vs::BodyMesh& mesh, int cells, bool onlySmooth)
{
    Vs::require(cells >= 1 && cells <= 1024, "a coarse mesh has from 1 to 1024 cells");
    const GkVector3d size = mesh.bounds.high() - mesh.bounds.low();
    const double longest = std::max({size.x, size.y, size.z});
    if (!(longest > 0) || mesh.normals.size() != mesh.positions.size())
        return nullptr;
    const double perCell = cells / longest;
    size_t single = SIZE_MAX;
    const Clusters clusters =
        onlySmooth ? smoothClusters(mesh, perCell, cells, single) : gridOf(mesh, perCell, cells);
    const std::vector<uint32_t>& cellOf = clusters.placeOf;
    const std::vector<Sum>& places = clusters.places;

    auto made = std::make_shared<Vs::BodyMesh>();
    made->bounds = mesh.bounds;
    made->colours = mesh.colours;
    made->finishes = mesh.finishes;
    std::unordered_map<uint64_t, uint32_t> corners;
    std::vector<Sum> normals;
    const auto cornerOf = [&](uint32_t vertex, size_t face) {
        constexpr uint64_t kAll = 7, kSingle = 8; // no side has these numbers
        const bool divided = cellOf[vertex] >= single;
        const uint64_t side = divided      ? kSingle
                              : onlySmooth ? kAll
                                           : sideOf(&mesh.normals[3 * size_t(vertex)]);
        const uint64_t colour = uint64_t(mesh.faces[face].colour) + 1;
        const uint64_t key = uint64_t(divided ? vertex : cellOf[vertex]) | side << 32 | colour << 36;
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

} // namespace

std::shared_ptr<const Vs::BodyMesh> coarseMesh(const Vs::BodyMesh& mesh, int cells)
{
    return clustered(mesh, cells, false);
}

std::shared_ptr<const Vs::BodyMesh> smoothedMesh(const Vs::BodyMesh& mesh, int cells)
{
    return clustered(mesh, cells, true);
}

} // namespace Rendra
