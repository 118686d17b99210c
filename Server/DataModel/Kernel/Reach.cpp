#include "Server/DataModel/Kernel/Reach.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRep_Tool.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_BezierSurface.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <gp_Circ.hxx>
#include <gp_Elips.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Vs::Kernel {

namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();

/// The largest of places along the direction.
class Furthest
{
public:
    explicit Furthest(const gp_Dir& direction) : m_direction(direction.XYZ()) {}

    double along(const gp_XYZ& vector) const { return vector * m_direction; }
    void add(const gp_Pnt& point) { add(along(point.XYZ())); }
    void add(double place) { m_place = std::max(m_place, place); }
    double place() const { return m_place; }

private:
    gp_XYZ m_direction;
    double m_place = -kFar;
};

// An arc is furthest at an end, or where the whole ellipse is.
void addArc(const BRepAdaptor_Curve& curve, const gp_Ax2& axes, double major, double minor,
            Furthest& furthest)
{
    const double cosine = major * furthest.along(axes.XDirection().XYZ());
    const double sine = minor * furthest.along(axes.YDirection().XYZ());
    const double first = curve.FirstParameter();
    const double turn = std::fmod(std::atan2(sine, cosine) - first, 2 * std::numbers::pi);
    if ((turn < 0 ? turn + 2 * std::numbers::pi : turn) <= curve.LastParameter() - first)
        furthest.add(furthest.along(axes.Location().XYZ()) + std::hypot(cosine, sine));
}

void addPoles(const TColgp_Array1OfPnt& poles, Furthest& furthest)
{
    for (const gp_Pnt& pole : poles)
        furthest.add(pole);
}

void addPoles(const TColgp_Array2OfPnt& poles, Furthest& furthest)
{
    for (int row = poles.LowerRow(); row <= poles.UpperRow(); ++row)
        for (int column = poles.LowerCol(); column <= poles.UpperCol(); ++column)
            furthest.add(poles(row, column));
}

void addEdge(const TopoDS_Edge& edge, Furthest& furthest)
{
    if (BRep_Tool::Degenerated(edge))
        return;
    if (!BRep_Tool::IsGeometric(edge)) {
        furthest.add(kFar);
        return;
    }
    const BRepAdaptor_Curve curve(edge);
    switch (curve.GetType()) {
    case GeomAbs_Line:
        furthest.add(curve.Value(curve.FirstParameter()));
        furthest.add(curve.Value(curve.LastParameter()));
        break;
    case GeomAbs_Circle: // Its ends are vertices.
        addArc(curve, curve.Circle().Position(), curve.Circle().Radius(), curve.Circle().Radius(), furthest);
        break;
    case GeomAbs_Ellipse:
        addArc(curve, curve.Ellipse().Position(), curve.Ellipse().MajorRadius(),
               curve.Ellipse().MinorRadius(), furthest);
        break;
    case GeomAbs_BSplineCurve:
        addPoles(curve.BSpline()->Poles(), furthest);
        break;
    case GeomAbs_BezierCurve:
        addPoles(curve.Bezier()->Poles(), furthest);
        break;
    default:
        furthest.add(kFar);
    }
}

void addMesh(const TopoDS_Face& face, Furthest& furthest)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, location);
    if (mesh.IsNull()) {
        furthest.add(kFar);
        return;
    }
    const double slack = mesh->Deflection() + BRep_Tool::Tolerance(face);
    for (int i = 1; i <= mesh->NbNodes(); ++i)
        furthest.add(furthest.along(mesh->Node(i).Transformed(location).XYZ()) + slack);
}

// What of a face lies between its edges.
void addInside(const TopoDS_Face& face, Furthest& furthest)
{
    const BRepAdaptor_Surface surface(face, false);
    switch (surface.GetType()) {
    case GeomAbs_Plane:
    case GeomAbs_Cylinder:
    case GeomAbs_Cone:
        break; // Straight lines, each of which ends at an edge.
    case GeomAbs_Sphere:
        furthest.add(furthest.along(surface.Sphere().Location().XYZ()) + surface.Sphere().Radius());
        break;
    case GeomAbs_Torus: {
        const gp_Torus torus = surface.Torus();
        const double axial = furthest.along(torus.Axis().Direction().XYZ());
        furthest.add(furthest.along(torus.Location().XYZ()) + torus.MinorRadius() +
                     torus.MajorRadius() * std::sqrt(std::max(0.0, 1 - axial * axial)));
        break;
    }
    case GeomAbs_BSplineSurface:
        addPoles(surface.BSpline()->Poles(), furthest);
        break;
    case GeomAbs_BezierSurface:
        addPoles(surface.Bezier()->Poles(), furthest);
        break;
    default:
        addMesh(face, furthest);
    }
}

} // namespace

double reachAlong(const TopoDS_Shape& shape, const gp_Dir& direction)
{
    Furthest furthest(direction);
    for (TopExp_Explorer vertex(shape, TopAbs_VERTEX); vertex.More(); vertex.Next())
        furthest.add(BRep_Tool::Pnt(TopoDS::Vertex(vertex.Current())));
    for (TopExp_Explorer edge(shape, TopAbs_EDGE); edge.More(); edge.Next())
        addEdge(TopoDS::Edge(edge.Current()), furthest);
    if (shape.ShapeType() == TopAbs_FACE)
        addInside(TopoDS::Face(shape), furthest);
    return std::isfinite(furthest.place()) ? furthest.place() : kFar;
}

} // namespace Vs::Kernel
