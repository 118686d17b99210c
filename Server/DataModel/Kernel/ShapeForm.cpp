#include "Server/DataModel/Kernel/ShapeForm.h"

#include "Server/DataModel/Kernel/RoundForm.h"
#include "Server/DataModel/Kernel/TriangleForm.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRep_Tool.hxx>
#include <GeomLib_IsPlanarSurface.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_Surface.hxx>
#include <Precision.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

namespace Vs::Kernel {

namespace {

// Writers of exchange files tend to turn everything into splines: one whose poles lie on a line is that line.
template <class Curve>
std::optional<gp_Lin> throughPoles(const Curve& curve)
{
    const gp_Pnt first = curve->Pole(1), last = curve->Pole(curve->NbPoles());
    if (first.Distance(last) < Precision::Confusion())
        return std::nullopt;
    const gp_Lin line(first, gp_Dir(gp_Vec(first, last)));
    for (int i = 2; i < curve->NbPoles(); ++i)
        if (line.Distance(curve->Pole(i)) > Precision::Confusion())
            return std::nullopt;
    return line;
}

std::optional<gp_Lin> straight(const BRepAdaptor_Curve& curve)
{
    switch (curve.GetType()) {
    case GeomAbs_Line:
        return curve.Line();
    case GeomAbs_BSplineCurve:
        return throughPoles(curve.BSpline());
    case GeomAbs_BezierCurve:
        return throughPoles(curve.Bezier());
    default:
        return std::nullopt;
    }
}

std::optional<gp_Pln> flat(const TopoDS_Face& face)
{
    if (BRep_Tool::Surface(face).IsNull())
        return planeOfTriangles(face);
    const BRepAdaptor_Surface surface(face, false);
    gp_Pln plane;
    if (surface.GetType() == GeomAbs_Plane) {
        plane = surface.Plane();
    } else if (surface.GetType() == GeomAbs_BSplineSurface || surface.GetType() == GeomAbs_BezierSurface ||
               surface.GetType() == GeomAbs_SurfaceOfExtrusion) {
        const GeomLib_IsPlanarSurface test(BRep_Tool::Surface(face), Precision::Confusion());
        if (!test.IsPlanar())
            return std::nullopt;
        plane = test.Plan();
        gp_Pnt point;
        gp_Vec u, v;
        surface.D1((surface.FirstUParameter() + surface.LastUParameter()) / 2,
                   (surface.FirstVParameter() + surface.LastVParameter()) / 2, point, u, v);
        if (u.Crossed(v).Dot(plane.Axis().Direction()) < 0)
            plane.SetAxis(plane.Axis().Reversed());
    } else {
        return std::nullopt;
    }
    // The normal to the outside also where the plane's own axes are left-handed.
    gp_Ax1 normal = plane.Axis();
    if ((face.Orientation() == TopAbs_REVERSED) != !plane.Direct())
        normal.Reverse();
    return gp_Pln(normal.Location(), normal.Direction());
}

ShapeKind kindOfFace(const TopoDS_Face& face)
{
    if (flat(face))
        return ShapeKind::Plane;
    const std::optional<RoundForm> round = roundFormOf(face);
    if (!round)
        return ShapeKind::Face;
    switch (round->kind) {
    case RoundForm::Kind::Cylinder:
        return ShapeKind::Cylinder;
    case RoundForm::Kind::Cone:
        return ShapeKind::Cone;
    case RoundForm::Kind::Sphere:
        return ShapeKind::Sphere;
    default:
        return ShapeKind::Face;
    }
}

ShapeKind kindOfEdge(const TopoDS_Edge& edge)
{
    if (!BRep_Tool::IsGeometric(edge))
        return ShapeKind::Curve;
    const BRepAdaptor_Curve curve(edge);
    return straight(curve) ? ShapeKind::Line : circleOf(curve) ? ShapeKind::Circle : ShapeKind::Curve;
}

bool isUnbounded(const TopoDS_Edge& edge)
{
    double first, last;
    BRep_Tool::Range(edge, first, last);
    return Precision::IsInfinite(first) || Precision::IsInfinite(last);
}

bool isUnbounded(const TopoDS_Face& face)
{
    if (TopExp_Explorer(face, TopAbs_EDGE).More())
        return false; // its edges tell
    double u1, u2, v1, v2;
    BRep_Tool::Surface(face)->Bounds(u1, u2, v1, v2);
    return Precision::IsInfinite(u1) || Precision::IsInfinite(u2) || Precision::IsInfinite(v1) ||
           Precision::IsInfinite(v2);
}

} // namespace

ShapeKind kindOf(const TopoDS_Shape& shape)
{
    switch (shape.ShapeType()) {
    case TopAbs_VERTEX:
        return ShapeKind::Vertex;
    case TopAbs_EDGE:
        return kindOfEdge(TopoDS::Edge(shape));
    case TopAbs_FACE:
        return kindOfFace(TopoDS::Face(shape));
    default:
        return ShapeKind::Body;
    }
}

NoAnswer fault(const TopoDS_Shape& shape)
{
    bool empty = !TopExp_Explorer(shape, TopAbs_VERTEX).More();
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        if (BRep_Tool::Surface(face).IsNull())
            return NoAnswer::Triangles;
        if (isUnbounded(face))
            return NoAnswer::Unbounded;
        empty = false;
    }
    for (TopExp_Explorer edges(shape, TopAbs_EDGE); edges.More(); edges.Next()) {
        const TopoDS_Edge& edge = TopoDS::Edge(edges.Current());
        if (!BRep_Tool::IsGeometric(edge) && !BRep_Tool::Degenerated(edge))
            return NoAnswer::Degenerate;
        if (isUnbounded(edge))
            return NoAnswer::Unbounded;
        empty = false;
    }
    return empty ? NoAnswer::Degenerate : NoAnswer::None;
}

NoAnswer faultOfPart(const TopoDS_Shape& part)
{
    const bool ofTriangles =
        part.ShapeType() == TopAbs_FACE && BRep_Tool::Surface(TopoDS::Face(part)).IsNull();
    return ofTriangles ? NoAnswer::None : fault(part);
}

std::optional<gp_Lin> lineOf(const TopoDS_Shape& shape)
{
    if (shape.ShapeType() == TopAbs_EDGE)
        return straight(BRepAdaptor_Curve(TopoDS::Edge(shape)));
    if (shape.ShapeType() != TopAbs_FACE)
        return std::nullopt;
    const std::optional<RoundForm> round =
        flat(TopoDS::Face(shape)) ? std::nullopt : roundFormOf(TopoDS::Face(shape));
    const bool hasLine =
        round && (round->kind == RoundForm::Kind::Cylinder || round->kind == RoundForm::Kind::Cone);
    return hasLine ? std::optional<gp_Lin>(round->axis) : std::nullopt;
}

std::optional<gp_Pln> planeOf(const TopoDS_Shape& shape)
{
    if (shape.ShapeType() == TopAbs_FACE)
        return flat(TopoDS::Face(shape));
    if (shape.ShapeType() != TopAbs_EDGE)
        return std::nullopt;
    const BRepAdaptor_Curve curve(TopoDS::Edge(shape));
    const std::optional<gp_Circ> circle = straight(curve) ? std::nullopt : circleOf(curve);
    if (!circle)
        return std::nullopt;
    return gp_Pln(circle->Location(), circle->Axis().Direction());
}

} // namespace Vs::Kernel
