#include "Server/DataModel/Kernel/TriangleParts.h"

#include "Server/Body/DividedMesh.h"
#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/TriangleLoops.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Poly_Triangulation.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <gp_Lin.hxx>

#include <algorithm>
#include <unordered_map>

namespace Vs::Kernel {

namespace {

/// Of a line's length; single precision doesn't hold more.
constexpr double kStraight = 1e-6;

gp_Pnt pointAt(const std::vector<float>& points, size_t index)
{
    return {points[3 * index], points[3 * index + 1], points[3 * index + 2]};
}

TopoDS_Shape faceOf(const BodyMesh& mesh, const BodyMesh::Face& face)
{
    std::unordered_map<uint32_t, int> numbers;
    std::vector<uint32_t> nodes;
    const size_t first = size_t(face.firstTriangle) * 3, count = size_t(face.triangleCount) * 3;
    for (size_t i = first; i < first + count; ++i)
        if (numbers.try_emplace(mesh.triangles[i], int(nodes.size()) + 1).second)
            nodes.push_back(mesh.triangles[i]);
    const Handle(Poly_Triangulation) triangles =
        new Poly_Triangulation(int(nodes.size()), int(face.triangleCount), false);
    for (size_t i = 0; i < nodes.size(); ++i)
        triangles->SetNode(int(i) + 1, pointAt(mesh.positions, nodes[i]));
    for (size_t i = 0; i < face.triangleCount; ++i) {
        const uint32_t* corners = &mesh.triangles[first + 3 * i];
        triangles->SetTriangle(int(i) + 1,
                               Poly_Triangle(numbers[corners[0]], numbers[corners[1]], numbers[corners[2]]));
    }
    TopoDS_Face made;
    BRep_Builder().MakeFace(made, triangles);
    return made;
}

bool isStraight(const TColgp_Array1OfPnt& points)
{
    const gp_Pnt &first = points.First(), &last = points.Last();
    const double length = first.Distance(last);
    if (points.Length() == 2 || length == 0)
        return points.Length() == 2;
    const gp_Lin line(first, gp_Dir(gp_Vec(first, last)));
    return std::all_of(points.begin(), points.end(),
                       [&](const gp_Pnt& p) { return line.Distance(p) <= kStraight * length; });
}

// The parameter is the length, so that the kernel's searches step evenly.
TopoDS_Shape edgeThrough(const TColgp_Array1OfPnt& points)
{
    if (isStraight(points)) {
        BRepBuilderAPI_MakeEdge straight(points.First(), points.Last());
        return straight.IsDone() ? straight.Shape() : TopoDS_Shape();
    }
    TColStd_Array1OfReal knots(1, points.Length());
    TColStd_Array1OfInteger multiplicities(1, points.Length());
    multiplicities.Init(1);
    multiplicities.ChangeFirst() = multiplicities.ChangeLast() = 2;
    knots(1) = 0;
    for (int i = 2; i <= points.Length(); ++i)
        knots(i) = knots(i - 1) + points(i).Distance(points(i - 1));
    BRepBuilderAPI_MakeEdge bent(new Geom_BSplineCurve(points, knots, multiplicities, 1));
    return bent.IsDone() ? bent.Shape() : TopoDS_Shape();
}

TopoDS_Shape edgeOf(const BodyMesh& mesh, size_t edge)
{
    const size_t begin = mesh.edgeStarts[edge], end = mesh.edgeStarts[edge + 1];
    TColgp_Array1OfPnt points(1, int(end - begin));
    for (size_t i = begin; i < end; ++i)
        points(int(i - begin) + 1) = pointAt(mesh.edgePoints, i);
    return edgeThrough(points);
}

} // namespace

bool isOfTriangles(const TopoDS_Shape& shape)
{
    bool any = false;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next()) {
        if (!BRep_Tool::Surface(TopoDS::Face(face.Current())).IsNull())
            return false;
        any = true;
    }
    return any && !TopExp_Explorer(shape, TopAbs_VERTEX).More();
}

TriangleParts::TriangleParts(const TopoDS_Shape& shape)
{
    const BodyMesh mesh = dividedMesh(extractMesh(shape, {}));
    for (const BodyMesh::Face& face : mesh.faces)
        faces.push_back(faceOf(mesh, face));
    for (size_t i = 0; i + 1 < mesh.edgeStarts.size(); ++i)
        edges.push_back(edgeOf(mesh, i));
    for (size_t i = 0; i < mesh.vertexPoints.size() / 3; ++i)
        vertices.push_back(BRepBuilderAPI_MakeVertex(pointAt(mesh.vertexPoints, i)));
    loops = outerLoops(mesh, faces);
}

} // namespace Vs::Kernel
