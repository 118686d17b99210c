#include "Server/DataModel/Measure/Private/DrawnMesh.h"

#include "Server/Base/Progress.h"
#include "Server/Body/DividedMesh.h"
#include "Server/Body/FinerMesh.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Body/PartsMesh.h"
#include "Server/Body/TangentEdges.h"
#include "Server/DataModel/Measure/Private/LineChains.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

namespace Vs {

namespace {

/// Of a triangle that is seen edge-on: the cosine of its normal and the view.
constexpr double kEdgeOn = 1e-6;

/// The triangles as one face, since outlines go on from one face to the next. Meanwhile a large body is
/// divided on another thread.
BodyMesh asOneFace(const std::shared_ptr<const BodyMesh>& mesh)
{
    static_cast<void>(partsMeshIfMade(mesh));
    BodyMesh whole;
    whole.positions = mesh->positions;
    whole.triangles = mesh->triangles;
    return whole;
}

/// A straight piece by its ends, whichever comes first.
using Ends = std::array<double, 6>;

Ends endsOf(const GkPoint3d& a, const GkPoint3d& b)
{
    const std::array<double, 3> one{a.x, a.y, a.z}, other{b.x, b.y, b.z};
    const auto& [first, second] = std::minmax(one, other);
    return {first[0], first[1], first[2], second[0], second[1], second[2]};
}

struct EndsHash
{
    size_t operator()(const Ends& ends) const
    {
        size_t sum = 0;
        for (const double each : ends)
            sum = (sum ^ std::hash<double>()(each)) * 0x9E3779B97F4A7C15ull;
        return sum ^ sum >> 32;
    }
};

} // namespace

DrawnMesh::DrawnMesh(std::shared_ptr<const BodyMesh> mesh)
    : m_mesh(std::move(mesh)), m_sides(asOneFace(m_mesh)), m_deviation(chordalDeviation(*m_mesh))
{
    if (Progress::cancelled())
        return;
    takeEdges(*partsMesh(m_mesh));
    dropSeams();
    if (m_edges.empty() && isOfTriangles(*m_mesh))
        takeBorders();
    findSharp();
    m_isClosed = encloses();
}

void DrawnMesh::takeEdges(const BodyMesh& parts)
{
    const std::vector<bool> tangent = tangentEdges(parts);
    for (size_t edge = 0; edge + 1 < parts.edgeStarts.size(); ++edge) {
        Polyline line{tangent[edge], {}};
        for (uint32_t i = parts.edgeStarts[edge]; i < parts.edgeStarts[edge + 1]; ++i)
            line.points.push_back(pointAt(parts.edgePoints, i));
        if (line.points.size() > 1)
            m_edges.push_back(std::move(line));
    }
}

// Where a round surface consists of several faces, nobody wants to see that in a drawing.
void DrawnMesh::dropSeams()
{
    if (isOfTriangles(*m_mesh) || m_mesh->normals.size() != m_mesh->positions.size())
        return;
    std::unordered_map<Ends, size_t, EndsHash> middles;
    for (size_t i = 0; i < m_edges.size(); ++i)
        if (const auto& points = m_edges[i].points; m_edges[i].smooth)
            middles[endsOf(points[points.size() / 2 - 1], points[points.size() / 2])] = i;
    std::vector<bool> isSeam(m_edges.size());
    for (size_t t = 0; !middles.empty() && t < m_sides.triangles(); ++t)
        for (size_t k = 0; k < 3; ++k) {
            const uint32_t other = m_sides.neighbour(t, k);
            if (other == MeshSides::kNone)
                continue;
            const uint32_t a = m_sides.node(t, k), b = m_sides.node(t, k + 1);
            const auto found = middles.find(endsOf(m_sides.place(a), m_sides.place(b)));
            if (found != middles.end())
                isSeam[found->second] = bendsAlike(curvature(t, a, b), curvature(other, a, b));
        }
    size_t next = 0;
    std::erase_if(m_edges, [&](const Polyline&) { return isSeam[next++]; });
}

// By how much the normal turns on the way from the side to the triangle's third corner.
double DrawnMesh::curvature(size_t triangle, uint32_t a, uint32_t b) const
{
    GkVector3d turn, across;
    for (size_t k = 0; k < 3; ++k) {
        const uint32_t node = m_sides.node(triangle, k);
        const GkVector3d normal = pointAt(m_mesh->normals, m_mesh->triangles[3 * triangle + k]).asVector();
        if (node == a || node == b) {
            turn = turn - normal * 0.5;
            continue;
        }
        turn = turn + normal;
        const GkVector3d along = (m_sides.place(b) - m_sides.place(a)).normal();
        const GkVector3d to = m_sides.place(node) - m_sides.place(a);
        across = to - along * to.dotProduct(along);
    }
    const double squared = across.lengthSqrd();
    return squared > 0 ? turn.dotProduct(across) / squared : 0;
}

bool DrawnMesh::bendsAlike(double one, double other) const
{
    constexpr double kFlat = 1e-3, kAlike = 0.2;
    const double larger = std::max(std::abs(one), std::abs(other));
    return larger * m_sides.size() < kFlat || std::abs(one - other) < kAlike * larger;
}

// A surface that is too rough to have edges still ends somewhere.
void DrawnMesh::takeBorders()
{
    LineChains chains;
    for (size_t t = 0; t < m_sides.triangles(); ++t)
        for (size_t k = 0; k < 3; ++k)
            if (m_sides.isFirst(t, k) && m_sides.neighbour(t, k) == MeshSides::kNone)
                chains.add(m_sides.node(t, k), m_sides.node(t, k + 1));
    for (const std::vector<uint32_t>& chain : chains.take()) {
        Polyline line;
        for (const uint32_t node : chain)
            line.points.push_back(m_sides.place(node));
        m_edges.push_back(std::move(line));
    }
}

void DrawnMesh::findSharp()
{
    std::unordered_set<Ends, EndsHash> drawn;
    for (const Polyline& line : m_edges)
        for (size_t i = 1; !line.smooth && i < line.points.size(); ++i)
            drawn.insert(endsOf(line.points[i - 1], line.points[i]));
    m_sharp.resize(m_sides.triangles() * 3);
    if (drawn.empty())
        return;
    for (size_t t = 0; t < m_sides.triangles(); ++t)
        for (size_t k = 0; k < 3; ++k)
            m_sharp[3 * t + k] = drawn.contains(
                endsOf(m_sides.place(m_sides.node(t, k)), m_sides.place(m_sides.node(t, k + 1))));
}

bool DrawnMesh::encloses() const
{
    double volume = 0;
    for (size_t t = 0; t < m_sides.triangles(); ++t) {
        for (size_t k = 0; k < 3; ++k) {
            const uint32_t other = m_sides.neighbour(t, k);
            if (other == MeshSides::kNone && !m_sides.isThin(t))
                return false;
            if (other == MeshSides::kNone)
                continue;
            // Neighbours pass their side in opposite senses, unless one of them is inside out.
            for (size_t l = 0; l < 3; ++l)
                if (m_sides.node(other, l) == m_sides.node(t, k) &&
                    m_sides.node(other, l + 1) == m_sides.node(t, k + 1))
                    return false;
        }
        volume += m_sides.area(t).dotProduct(m_sides.place(m_sides.node(t, 0)) - m_sides.place(0));
    }
    return volume > 0;
}

// Slivers may stand askew or be folded over, at a pole for instance; the normals of the exact surface don't.
GkVector3d DrawnMesh::normalOf(size_t triangle) const
{
    constexpr double kAskew = 0.9; // More than facets of a coarse mesh turn from their corners' normals.
    const GkVector3d area = m_sides.area(triangle);
    if (isOfTriangles(*m_mesh) || m_mesh->normals.size() != m_mesh->positions.size())
        return area;
    GkVector3d exact;
    for (size_t k = 0; k < 3; ++k)
        exact = exact + pointAt(m_mesh->normals, m_mesh->triangles[3 * triangle + k]).asVector();
    return area.dotProduct(exact) < kAskew * area.length() * exact.length() ? exact : area;
}

std::vector<DrawnMesh::Polyline> DrawnMesh::outlines(const GkVector3d& towardsViewer) const
{
    std::vector<bool> facing(m_sides.triangles());
    for (size_t t = 0; t < facing.size(); ++t) {
        const GkVector3d normal = normalOf(t);
        facing[t] = normal.dotProduct(towardsViewer) > kEdgeOn * normal.length() * towardsViewer.length();
    }
    const auto isTurned = [&](size_t t, size_t k) {
        const uint32_t other = m_sides.neighbour(t, k);
        if (other == MeshSides::kNone || m_sides.isThin(t) || m_sides.isThin(other))
            return false;
        bool sameSense = false;
        for (size_t l = 0; l < 3; ++l)
            sameSense = sameSense || (m_sides.node(other, l) == m_sides.node(t, k) &&
                                      m_sides.node(other, l + 1) == m_sides.node(t, k + 1));
        return (facing[t] != facing[other]) != sameSense;
    };
    LineChains chains;
    for (size_t t = 0; t < m_sides.triangles(); ++t)
        for (size_t k = 0; k < 3; ++k)
            if (m_sides.isFirst(t, k) && !m_sharp[3 * t + k] && isTurned(t, k))
                chains.add(m_sides.node(t, k), m_sides.node(t, k + 1));
    std::vector<Polyline> lines;
    for (const std::vector<uint32_t>& chain : chains.take()) {
        Polyline line;
        for (const uint32_t node : chain)
            line.points.push_back(m_sides.place(node));
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace Vs
