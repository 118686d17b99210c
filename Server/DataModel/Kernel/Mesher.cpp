#include "Server/DataModel/Kernel/Mesher.h"

#include "Server/DataModel/Kernel/SubShapes.h"
#include "Server/DataModel/Model/ForkedChild.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <IMeshTools_Parameters.hxx>
#include <Message_ProgressScope.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_DataMapOfShapeInteger.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <utility>

namespace Vs::Kernel {

namespace {

// Below this the kernel's own tolerance would take over.
constexpr double kSmallestDeflection = 1e-4; // mm

void addVector(std::vector<float>& target, const gp_XYZ& v)
{
    target.push_back(static_cast<float>(v.X()));
    target.push_back(static_cast<float>(v.Y()));
    target.push_back(static_cast<float>(v.Z()));
}

// Puts the triangles of single faces into one mesh.
class FaceCollector
{
public:
    FaceCollector(BodyMesh& mesh, const ShapeColours& colours) : m_mesh(mesh)
    {
        const auto isKnown = [](const auto& each) { return each.finish.isKnown != 0; };
        if (isKnown(colours) || std::ranges::any_of(colours.entries, isKnown))
            m_mesh.finishes.push_back(colours.finish);
        for (const ShapeColours::Entry& entry : colours.entries) {
            const int index = colourIndex(entry.colour, isKnown(entry) ? entry.finish : colours.finish);
            for (TopExp_Explorer faces(entry.part, TopAbs_FACE); faces.More(); faces.Next())
                m_colourOfFace.Bind(faces.Current(), index);
        }
    }

    void add(const TopoDS_Face& face)
    {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
        const uint32_t first = static_cast<uint32_t>(m_mesh.triangles.size() / 3);
        const int* colour = m_colourOfFace.Seek(face);
        const int triangles = triangulation.IsNull() ? 0 : triangulation->NbTriangles();
        m_mesh.faces.push_back({first, static_cast<uint32_t>(triangles), colour ? *colour : -1});
        if (triangles == 0)
            return;
        const gp_Trsf& motion = location.Transformation();
        const bool moved = !location.IsIdentity();
        const bool reversed = face.Orientation() == TopAbs_REVERSED;
        const uint32_t base = static_cast<uint32_t>(m_mesh.positions.size() / 3);
        for (int i = 1; i <= triangulation->NbNodes(); ++i) {
            gp_Pnt point = triangulation->Node(i);
            if (moved)
                point.Transform(motion);
            addVector(m_mesh.positions, point.XYZ());
            m_mesh.bounds.add({point.X(), point.Y(), point.Z()});
        }
        // A mirrored placement turns the triangles over a second time.
        const bool flip = reversed != (moved && motion.IsNegative());
        for (int i = 1; i <= triangles; ++i) {
            int a, b, c;
            triangulation->Triangle(i).Get(a, b, c);
            if (flip)
                std::swap(b, c);
            for (const int node : {a, b, c})
                m_mesh.triangles.push_back(base + static_cast<uint32_t>(node - 1));
        }
        addNormals(face, triangulation, moved ? &motion : nullptr, reversed, base, first);
    }

private:
    int colourIndex(const Colour& colour, const Finish& finish)
    {
        const bool finished = !m_mesh.finishes.empty();
        for (size_t i = 0; i < m_mesh.colours.size(); ++i)
            if (m_mesh.colours[i] == colour && (!finished || m_mesh.finishes[i + 1] == finish))
                return static_cast<int>(i);
        m_mesh.colours.push_back(colour);
        if (finished)
            m_mesh.finishes.push_back(finish);
        return static_cast<int>(m_mesh.colours.size()) - 1;
    }

    void addNormals(const TopoDS_Face& face, const Handle(Poly_Triangulation) & triangulation,
                    const gp_Trsf* motion, bool reversed, uint32_t base, uint32_t first)
    {
        const int nodes = triangulation->NbNodes();
        if (triangulation->HasNormals()) {
            for (int i = 1; i <= nodes; ++i) {
                gp_Dir normal = triangulation->Normal(i);
                if (motion)
                    normal.Transform(*motion);
                addVector(m_mesh.normals, (reversed ? normal.Reversed() : normal).XYZ());
            }
            return;
        }
        const bool exact = triangulation->HasUVNodes() && !BRep_Tool::Surface(face).IsNull();
        if (!exact) {
            averageNormals(base, first, nodes);
            return;
        }
        const BRepAdaptor_Surface surface(face, false);
        if (surface.GetType() == GeomAbs_Plane) {
            const gp_Ax3 axes = surface.Plane().Position();
            gp_XYZ normal = axes.XDirection().Crossed(axes.YDirection()).XYZ();
            if (reversed)
                normal.Reverse();
            for (int i = 0; i < nodes; ++i)
                addVector(m_mesh.normals, normal);
            return;
        }
        std::vector<uint32_t> missing;
        for (int i = 1; i <= nodes; ++i) {
            const gp_Pnt2d uv = triangulation->UVNode(i);
            gp_Pnt point;
            gp_Vec du, dv;
            surface.D1(uv.X(), uv.Y(), point, du, dv);
            gp_XYZ normal = du.Crossed(dv).XYZ();
            const double length = normal.Modulus();
            // Beside a pole, rounding may turn the shorter derivative around.
            const double shorter = std::min(du.Magnitude(), dv.Magnitude()),
                         longer = std::max(du.Magnitude(), dv.Magnitude());
            if (!(length > 1e-9 * shorter * longer) || !(shorter > 1e-9 * longer) || !(length > 1e-200)) {
                missing.push_back(base + static_cast<uint32_t>(i - 1));
                normal = {0, 0, 1};
            } else {
                normal.Divide(reversed ? -length : length);
            }
            addVector(m_mesh.normals, normal);
        }
        fillFromTriangles(missing, first);
    }

    // At a pole or another place where the surface has no normal, the surrounding triangles give it.
    void fillFromTriangles(const std::vector<uint32_t>& vertices, uint32_t first)
    {
        if (vertices.empty())
            return;
        for (const uint32_t vertex : vertices) {
            gp_XYZ sum(0, 0, 0);
            for (size_t i = size_t(first) * 3; i < m_mesh.triangles.size(); i += 3)
                if (m_mesh.triangles[i] == vertex || m_mesh.triangles[i + 1] == vertex ||
                    m_mesh.triangles[i + 2] == vertex)
                    sum += areaVector(i);
            setNormal(vertex, sum);
        }
    }

    void averageNormals(uint32_t base, uint32_t first, int nodes)
    {
        std::vector<gp_XYZ> sums(size_t(nodes), gp_XYZ(0, 0, 0));
        for (size_t i = size_t(first) * 3; i < m_mesh.triangles.size(); i += 3) {
            const gp_XYZ area = areaVector(i);
            for (size_t k = 0; k < 3; ++k)
                sums[m_mesh.triangles[i + k] - base] += area;
        }
        m_mesh.normals.resize(m_mesh.positions.size());
        for (uint32_t i = 0; i < sums.size(); ++i)
            setNormal(base + i, sums[i]);
    }

    gp_XYZ position(uint32_t vertex) const
    {
        const float* p = &m_mesh.positions[size_t(vertex) * 3];
        return {p[0], p[1], p[2]};
    }

    gp_XYZ areaVector(size_t triangle) const
    {
        const gp_XYZ a = position(m_mesh.triangles[triangle]);
        return (position(m_mesh.triangles[triangle + 1]) - a) ^
               (position(m_mesh.triangles[triangle + 2]) - a);
    }

    void setNormal(uint32_t vertex, gp_XYZ normal)
    {
        const double length = normal.Modulus();
        normal = length > 0 ? normal / length : gp_XYZ(0, 0, 1);
        float* target = &m_mesh.normals[size_t(vertex) * 3];
        target[0] = static_cast<float>(normal.X());
        target[1] = static_cast<float>(normal.Y());
        target[2] = static_cast<float>(normal.Z());
    }

    BodyMesh& m_mesh;
    TopTools_DataMapOfShapeInteger m_colourOfFace;
};

// Adds the line of an edge as a face's triangulation has it; false if that has none.
bool addEdgeOnFace(BodyMesh& mesh, const TopoDS_Edge& edge, const TopoDS_Face& face)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
    if (triangulation.IsNull())
        return false;
    const Handle(Poly_PolygonOnTriangulation)& line =
        BRep_Tool::PolygonOnTriangulation(edge, triangulation, location);
    if (line.IsNull() || line->NbNodes() < 2)
        return false;
    for (int i = 1; i <= line->NbNodes(); ++i)
        addVector(mesh.edgePoints,
                  triangulation->Node(line->Node(i)).Transformed(location.Transformation()).XYZ());
    return true;
}

// Adds the line of an edge that belongs to no face.
bool addFreeEdge(BodyMesh& mesh, const TopoDS_Edge& edge)
{
    TopLoc_Location location;
    if (!BRep_Tool::IsGeometric(edge))
        return false;
    const BRepAdaptor_Curve curve(edge);
    if (std::abs(curve.FirstParameter()) > 1e50 || std::abs(curve.LastParameter()) > 1e50)
        return false;
    const GCPnts_TangentialDeflection points(curve, 0.2, 0.1);
    for (int i = 1; i <= points.NbPoints(); ++i) {
        addVector(mesh.edgePoints, points.Value(i).XYZ());
        mesh.bounds.add({points.Value(i).X(), points.Value(i).Y(), points.Value(i).Z()});
    }
    return points.NbPoints() >= 2;
}

// Each edge gets its place among the lines, even one that can't be drawn: the place identifies the edge.
void addEdges(BodyMesh& mesh, const TopoDS_Shape& shape)
{
    for (const VisibleEdge& each : visibleEdges(shape)) {
        const uint32_t start = static_cast<uint32_t>(mesh.edgePoints.size() / 3);
        bool added = each.faces.IsEmpty() && addFreeEdge(mesh, each.edge);
        for (auto face = each.faces.begin(); face != each.faces.end() && !added; ++face)
            added = addEdgeOnFace(mesh, each.edge, TopoDS::Face(*face));
        if (!added)
            mesh.edgePoints.resize(size_t(start) * 3);
        mesh.edgeStarts.push_back(start);
    }
    mesh.edgeStarts.push_back(static_cast<uint32_t>(mesh.edgePoints.size() / 3));
}

// In the order in which SubShapes counts them.
void addVertices(BodyMesh& mesh, const TopoDS_Shape& shape)
{
    TopTools_IndexedMapOfShape vertices;
    TopExp::MapShapes(shape, TopAbs_VERTEX, vertices);
    for (int i = 1; i <= vertices.Extent(); ++i)
        addVector(mesh.vertexPoints, BRep_Tool::Pnt(TopoDS::Vertex(vertices(i))).XYZ());
}

void mesh(const TopoDS_Shape& shape, const TranslatorRefinement& refinement,
          const Message_ProgressRange& progress, MeshThreads threads, const FaceWatch& watch)
{
    Bnd_Box box;
    BRepBndLib::AddClose(shape, box);
    if (box.IsVoid())
        return;
    IMeshTools_Parameters parameters;
    parameters.Deflection =
        std::max(std::sqrt(box.SquareExtent()) * refinement.surfaceDeviation, kSmallestDeflection);
    parameters.Angle = refinement.normalDeviation * std::numbers::pi / 180.0;
    parameters.InParallel = threads == MeshThreads::All && !ForkedChild::is();
    const auto perform = [&](const Message_ProgressRange& range) {
        BRepMesh_IncrementalMesh mesher;
        mesher.SetShape(shape);
        mesher.ChangeParameters() = parameters;
        mesher.Perform(meshContext(watch), range);
    };
    if (!parameters.InParallel)
        return perform(progress);
    Message_ProgressScope scope(progress, "Meshing", 1);
    try {
        perform(scope.Next());
    } catch (const std::runtime_error&) {
        // The system grants no more threads, which the kernel's thread pool doesn't bear.
        parameters.InParallel = false;
        perform({});
    }
}

} // namespace

void meshShape(const TopoDS_Shape& shape, const TranslatorRefinement& refinement,
               const Message_ProgressRange& progress, MeshThreads threads)
{
    mesh(shape, refinement, progress, threads, {});
}

void meshWatched(const TopoDS_Shape& shape, const TranslatorRefinement& refinement, const FaceWatch& watch)
{
    mesh(shape, refinement, {}, MeshThreads::Own, watch);
}

BodyMesh extractMesh(const TopoDS_Shape& shape, const ShapeColours& colours)
{
    BodyMesh mesh;
    FaceCollector collector(mesh, colours);
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        collector.add(TopoDS::Face(faces.Current()));
    addEdges(mesh, shape);
    addVertices(mesh, shape);
    return mesh;
}

bool hasTriangles(const TopoDS_Shape& shape)
{
    TopLoc_Location location;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        const Handle(Poly_Triangulation)& triangulation =
            BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location);
        if (!triangulation.IsNull() && triangulation->NbTriangles() > 0)
            return true;
    }
    return false;
}

} // namespace Vs::Kernel
