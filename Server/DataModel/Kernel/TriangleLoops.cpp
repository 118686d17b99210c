#include "Server/DataModel/Kernel/TriangleLoops.h"

#include "Server/DataModel/Kernel/TriangleForm.h"

#include <Bnd_Box.hxx>
#include <TopoDS.hxx>
#include <gp_Ax2.hxx>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <utility>

namespace Vs::Kernel {

namespace {

/// Triangles of a file may have corners of their own in the same places.
using Place = std::array<float, 3>;
using Side = std::pair<Place, Place>;
using Edges = std::vector<uint32_t>;

Place placeAt(const std::vector<float>& points, size_t index)
{
    return {points[3 * index], points[3 * index + 1], points[3 * index + 2]};
}

gp_Pnt pointAt(const std::vector<float>& points, size_t index)
{
    return {points[3 * index], points[3 * index + 1], points[3 * index + 2]};
}

Side sideOf(const Place& a, const Place& b)
{
    return a < b ? Side(a, b) : Side(b, a);
}

/// The edges that bound each face: an edge lies between the same two faces as its first piece does. A crease
/// within a face bounds nothing.
std::vector<Edges> edgesOfFaces(const BodyMesh& mesh)
{
    std::map<Side, std::pair<uint32_t, bool>> beginnings; // The edge that begins there; whether it was met.
    for (uint32_t edge = 0; edge + 1 < mesh.edgeStarts.size(); ++edge)
        if (const size_t begin = mesh.edgeStarts[edge]; mesh.edgeStarts[edge + 1] > begin + 1)
            beginnings[sideOf(placeAt(mesh.edgePoints, begin), placeAt(mesh.edgePoints, begin + 1))] = {
                edge, false};
    std::vector<Edges> found(mesh.faces.size());
    for (size_t face = 0; face < mesh.faces.size(); ++face) {
        const size_t first = size_t(mesh.faces[face].firstTriangle) * 3;
        for (size_t i = 0; i < size_t(mesh.faces[face].triangleCount) * 3; ++i) {
            const size_t next = i % 3 == 2 ? i - 2 : i + 1;
            const auto at = beginnings.find(sideOf(placeAt(mesh.positions, mesh.triangles[first + i]),
                                                   placeAt(mesh.positions, mesh.triangles[first + next])));
            if (at == beginnings.end())
                continue;
            Edges& edges = found[face];
            if (const auto known = std::ranges::find(edges, at->second.first); known != edges.end())
                edges.erase(known);
            else
                edges.push_back(at->second.first);
        }
    }
    return found;
}

/// Edges that are connected at their ends.
std::vector<Edges> rimsOf(const BodyMesh& mesh, const Edges& edges)
{
    std::vector<size_t> group(edges.size());
    std::iota(group.begin(), group.end(), size_t(0));
    std::map<Place, size_t> ends;
    for (size_t i = 0; i < edges.size(); ++i)
        for (const size_t point :
             {size_t(mesh.edgeStarts[edges[i]]), size_t(mesh.edgeStarts[edges[i] + 1]) - 1}) {
            const auto [at, isNew] = ends.try_emplace(placeAt(mesh.edgePoints, point), i);
            if (!isNew)
                std::ranges::replace(group, group[i], group[at->second]);
        }
    std::map<size_t, Edges> rims;
    for (size_t i = 0; i < edges.size(); ++i)
        rims[group[i]].push_back(edges[i]);
    std::vector<Edges> all;
    for (auto& [first, rim] : rims)
        all.push_back(std::move(rim));
    return all;
}

double extentOf(const BodyMesh& mesh, const Edges& rim)
{
    Bnd_Box box;
    for (const uint32_t edge : rim)
        for (size_t i = mesh.edgeStarts[edge]; i < mesh.edgeStarts[edge + 1]; ++i)
            box.Add(pointAt(mesh.edgePoints, i));
    return box.SquareExtent();
}

/// Whether the angles about the axis that a rim of one edge runs through make a whole turn.
bool goesRound(const BodyMesh& mesh, const Edges& rim, const gp_Ax1& axis)
{
    const gp_Ax2 axes(axis.Location(), axis.Direction());
    const auto angleOf = [&](size_t point) {
        const gp_Vec way(axis.Location(), pointAt(mesh.edgePoints, point));
        return std::atan2(way.Dot(gp_Vec(axes.YDirection())), way.Dot(gp_Vec(axes.XDirection())));
    };
    double turn = 0;
    for (size_t i = mesh.edgeStarts[rim.front()]; i + 1 < mesh.edgeStarts[rim.front() + 1]; ++i)
        turn += std::remainder(angleOf(i + 1) - angleOf(i), 2 * std::numbers::pi);
    return rim.size() == 1 && std::abs(turn) > std::numbers::pi;
}

Edges outerLoop(const BodyMesh& mesh, const Edges& edges, const TopoDS_Face& face)
{
    std::vector<Edges> rims = rimsOf(mesh, edges);
    if (rims.size() <= 1)
        return rims.empty() ? Edges() : rims.front();
    const std::optional<RoundForm> cylinder = cylinderOfTriangles(face);
    if (!cylinder && !planeOfTriangles(face))
        return {};
    Edges round;
    for (const Edges& rim : rims)
        if (cylinder && goesRound(mesh, rim, cylinder->axis))
            round.insert(round.end(), rim.begin(), rim.end());
    if (!round.empty())
        return round;
    return *std::ranges::max_element(rims, {}, [&](const Edges& rim) { return extentOf(mesh, rim); });
}

} // namespace

std::vector<std::vector<uint32_t>> outerLoops(const BodyMesh& mesh, const std::vector<TopoDS_Shape>& faces)
{
    const std::vector<Edges> edges = edgesOfFaces(mesh);
    std::vector<Edges> loops;
    for (size_t i = 0; i < faces.size(); ++i)
        loops.push_back(outerLoop(mesh, edges[i], TopoDS::Face(faces[i])));
    return loops;
}

} // namespace Vs::Kernel
