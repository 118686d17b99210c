#include "Server/DataModel/Model/MeshArrays.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Vs {

namespace {

constexpr uint32_t kTopBit = 1u << 31;

// There may be a hundred million indices, so several are looked at at once. The plainest processors can't
// compare numbers without a sign in that way, but can subtract them.
bool allBelow(std::span<const uint32_t> indices, size_t count)
{
    if (indices.empty())
        return true;
    if (count == 0 || count > kTopBit)
        return false;
    const auto last = static_cast<uint32_t>(count - 1);
    constexpr size_t kAtOnce = 16;
    std::array<uint32_t, kAtOnce> beyond{};
    const uint32_t* at = indices.data();
    const uint32_t* const end = at + indices.size();
    for (; static_cast<size_t>(end - at) >= kAtOnce; at += kAtOnce)
        for (size_t i = 0; i < kAtOnce; ++i)
            beyond[i] |= at[i] | (last - at[i]);
    for (; at != end; ++at)
        beyond[0] |= *at | (last - *at);
    return std::none_of(beyond.begin(), beyond.end(), [](uint32_t bits) { return bits & kTopBit; });
}

bool facesFollow(const MeshArrays& mesh)
{
    uint64_t next = 0;
    for (const BodyMesh::Face& face : mesh.faces) {
        if (face.firstTriangle != next || face.colour < -1 ||
            face.colour >= static_cast<int64_t>(mesh.colours.size()))
            return false;
        next += face.triangleCount;
    }
    return next == mesh.triangles.size() / 3 && next <= std::numeric_limits<uint32_t>::max();
}

bool finishesFit(const MeshArrays& mesh)
{
    return mesh.finishes.empty() ||
           (mesh.finishes.size() == mesh.colours.size() + 1 &&
            std::ranges::all_of(mesh.finishes, [](const Finish& finish) { return finish.isSound(); }));
}

bool edgesFollow(const MeshArrays& mesh)
{
    if (mesh.edgeStarts.empty())
        return mesh.edgePoints.empty();
    uint32_t before = 0;
    for (const uint32_t start : mesh.edgeStarts) {
        if (start < before)
            return false;
        before = start;
    }
    return mesh.edgeStarts.front() == 0 && before == mesh.edgePoints.size() / 3;
}

} // namespace

MeshArrays MeshArrays::of(const BodyMesh& mesh)
{
    return {mesh.positions,  mesh.normals,    mesh.triangles,    mesh.faces,   mesh.colours,
            mesh.edgePoints, mesh.edgeStarts, mesh.vertexPoints, mesh.finishes};
}

bool MeshArrays::isSound() const
{
    return positions.size() % 3 == 0 && normals.size() == positions.size() && triangles.size() % 3 == 0 &&
           edgePoints.size() % 3 == 0 && vertexPoints.size() % 3 == 0 &&
           allBelow(triangles, positions.size() / 3) && facesFollow(*this) && finishesFit(*this) &&
           edgesFollow(*this);
}

} // namespace Vs
