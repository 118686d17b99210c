#include "Server/Body/TangentEdges.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <unordered_map>

namespace Vs {
namespace {

/// The angle between normals: three degrees.
constexpr float kLeastCosine = 0.9986f;

using Place = std::array<uint32_t, 3>;

struct Hash
{
    size_t operator()(const Place& place) const
    {
        uint64_t sum = 0;
        for (const uint32_t each : place)
            sum = (sum ^ each) * 0x9E3779B97F4A7C15ull;
        return sum ^ sum >> 32;
    }
};

Place placeAt(const std::vector<float>& points, size_t index)
{
    Place place;
    for (size_t i = 0; i < place.size(); ++i)
        place[i] = std::bit_cast<uint32_t>(points[3 * index + i] + 0.0f); // one zero alone
    return place;
}

/// A vertex of a face that is on an edge.
struct Touch
{
    uint32_t face, vertex;
};
using Touches = std::unordered_map<Place, std::vector<Touch>, Hash>;

/// The first of the two points in the middle of an edge, which are both on the adjacent triangles.
uint32_t middleOf(const BodyMesh& mesh, size_t edge)
{
    return (mesh.edgeStarts[edge] + mesh.edgeStarts[edge + 1] - 1) / 2;
}

bool isDrawn(const BodyMesh& mesh, size_t edge)
{
    return mesh.edgeStarts[edge] + 2 <= mesh.edgeStarts[edge + 1];
}

/// The vertices of faces that are on edges. Most vertices aren't, which a few bits tell in no time.
Touches touchesOf(const BodyMesh& mesh)
{
    Touches touches;
    for (size_t edge = 0; edge + 1 < mesh.edgeStarts.size(); ++edge)
        if (isDrawn(mesh, edge))
            for (const uint32_t point : {middleOf(mesh, edge), middleOf(mesh, edge) + 1})
                touches[placeAt(mesh.edgePoints, point)];
    std::vector<bool> mayTouch(std::bit_ceil(touches.size() * 8 + 1));
    for (const auto& [place, ignored] : touches)
        mayTouch[Hash()(place) & (mayTouch.size() - 1)] = true;
    std::vector<bool> seen(mesh.positions.size() / 3);
    for (uint32_t face = 0; face < mesh.faces.size(); ++face) {
        const size_t first = size_t(mesh.faces[face].firstTriangle) * 3;
        for (size_t i = first; i < first + size_t(mesh.faces[face].triangleCount) * 3; ++i) {
            const uint32_t vertex = mesh.triangles[i];
            if (seen[vertex])
                continue;
            seen[vertex] = true;
            const Place place = placeAt(mesh.positions, vertex);
            if (!mayTouch[Hash()(place) & (mayTouch.size() - 1)])
                continue;
            if (const auto found = touches.find(place); found != touches.end())
                found->second.push_back({face, vertex});
        }
    }
    return touches;
}

bool isAligned(const BodyMesh& mesh, uint32_t one, uint32_t other)
{
    float cosine = 0;
    for (size_t i = 0; i < 3; ++i)
        cosine += mesh.normals[3 * size_t(one) + i] * mesh.normals[3 * size_t(other) + i];
    return cosine > kLeastCosine;
}

/// Whether exactly two faces have both points, with the same normals.
bool isTangent(const BodyMesh& mesh, const std::vector<Touch>& here, const std::vector<Touch>& there)
{
    constexpr uint32_t kNone = std::numeric_limits<uint32_t>::max();
    std::array<uint32_t, 2> faces{kNone, kNone}, first{}, second{};
    size_t count = 0;
    for (const Touch& one : here)
        for (const Touch& other : there) {
            if (one.face != other.face || one.face == faces[0] || one.face == faces[1])
                continue;
            if (count == faces.size())
                return false;
            faces[count] = one.face;
            first[count] = one.vertex;
            second[count++] = other.vertex;
        }
    return count == faces.size() && isAligned(mesh, first[0], first[1]) &&
           isAligned(mesh, second[0], second[1]);
}

} // namespace

std::vector<bool> tangentEdges(const BodyMesh& mesh)
{
    std::vector<bool> tangent(mesh.edgeStarts.empty() ? 0 : mesh.edgeStarts.size() - 1);
    if (mesh.faces.size() < 2)
        return tangent;
    const Touches touches = touchesOf(mesh);
    for (size_t edge = 0; edge < tangent.size(); ++edge)
        if (isDrawn(mesh, edge)) {
            const uint32_t point = middleOf(mesh, edge);
            tangent[edge] = isTangent(mesh, touches.at(placeAt(mesh.edgePoints, point)),
                                      touches.at(placeAt(mesh.edgePoints, point + 1)));
        }
    return tangent;
}

} // namespace Vs
