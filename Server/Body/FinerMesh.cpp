#include "Server/Body/FinerMesh.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

namespace Vs {

namespace {

// A renderer may draw something else meanwhile, which has no finer meshes.
std::atomic<uint64_t> theRevision = 1;

/// Keeps the finer forms beside a mesh without a word of memory in those that have none.
struct FinerKeeper
{
    std::shared_ptr<const BodyMesh> mesh;
    std::shared_ptr<FinerMesh> finer;

    // Whoever still looks whether the mesh is there keeps this object, but shouldn't keep what it holds.
    void operator()(const BodyMesh*)
    {
        mesh.reset();
        finer.reset();
    }
};

const FinerKeeper* keeperOf(const std::shared_ptr<const BodyMesh>& mesh)
{
    return std::get_deleter<FinerKeeper>(mesh);
}

} // namespace

double FinerMesh::deviation(const BodyMesh& mesh)
{
    double known = m_deviation;
    if (known < 0)
        m_deviation = known = chordalDeviation(mesh);
    return known;
}

void FinerMesh::show(std::shared_ptr<const BodyMesh> finer)
{
    if (m_shown == finer)
        return;
    m_shown = std::move(finer);
    ++theRevision;
}

uint64_t FinerMesh::revision()
{
    return theRevision;
}

std::shared_ptr<const BodyMesh> withFinerMesh(std::shared_ptr<const BodyMesh> mesh,
                                              std::shared_ptr<FinerMesh> finer)
{
    const BodyMesh* const plain = mesh.get();
    return std::shared_ptr<const BodyMesh>(plain, FinerKeeper{std::move(mesh), std::move(finer)});
}

std::shared_ptr<FinerMesh> finerMeshOf(const std::shared_ptr<const BodyMesh>& mesh)
{
    const FinerKeeper* const keeper = keeperOf(mesh);
    return keeper ? keeper->finer : nullptr;
}

const std::shared_ptr<const BodyMesh>& shownMesh(const std::shared_ptr<const BodyMesh>& mesh)
{
    const FinerKeeper* const keeper = keeperOf(mesh);
    return keeper && keeper->finer && keeper->finer->shown() ? keeper->finer->shown() : mesh;
}

double chordalDeviation(const BodyMesh& mesh)
{
    if (mesh.normals.size() != mesh.positions.size())
        return 0;
    double largest = 0;
    const auto ask = [&](uint32_t a, uint32_t b) {
        // The normals at the ends of an arc differ along its chord: by that difference times an eighth of the
        // chord, the arc rises above it. What a chord runs along a straight line of the surface adds nothing.
        double sum = 0;
        for (size_t i = 0; i < 3; ++i)
            sum += double(mesh.positions[3 * size_t(b) + i] - mesh.positions[3 * size_t(a) + i]) *
                   double(mesh.normals[3 * size_t(b) + i] - mesh.normals[3 * size_t(a) + i]);
        largest = std::max(largest, std::abs(sum) / 8);
    };
    for (size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const uint32_t* t = &mesh.triangles[i];
        ask(t[0], t[1]);
        ask(t[1], t[2]);
        ask(t[2], t[0]);
    }
    // Rounding of the normals of flat faces.
    constexpr double kFlat = 1e-6;
    return largest > kFlat * mesh.bounds.diagonal() ? largest : 0;
}

bool hasSameParts(const BodyMesh& mesh, const BodyMesh& finer)
{
    if (mesh.faces.size() != finer.faces.size() || mesh.edgeStarts.size() != finer.edgeStarts.size() ||
        mesh.vertexPoints != finer.vertexPoints || finer.triangles.empty())
        return false;
    for (size_t i = 0; i < mesh.faces.size(); ++i)
        if (mesh.faces[i].triangleCount > 0 && finer.faces[i].triangleCount == 0)
            return false;
    const auto isNear = [&](uint32_t a, uint32_t b) {
        const double most = 1e-3 * mesh.bounds.diagonal();
        for (size_t i = 0; i < 3; ++i)
            if (std::abs(double(mesh.edgePoints[3 * size_t(a) + i]) -
                         double(finer.edgePoints[3 * size_t(b) + i])) > most)
                return false;
        return true;
    };
    for (size_t i = 0; i + 1 < mesh.edgeStarts.size(); ++i) {
        const uint32_t first = mesh.edgeStarts[i], end = mesh.edgeStarts[i + 1];
        const uint32_t finerFirst = finer.edgeStarts[i], finerEnd = finer.edgeStarts[i + 1];
        if ((first == end) != (finerFirst == finerEnd))
            return false;
        if (first != end && (!isNear(first, finerFirst) || !isNear(end - 1, finerEnd - 1)))
            return false;
    }
    return true;
}

} // namespace Vs
