#include "Server/DataModel/Kernel/TriangleForm.h"

#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Poly_Triangulation.hxx>
#include <gce_MakeCirc.hxx>
#include <gp_Ax2.hxx>
#include <gp_Lin.hxx>
#include <gp_Mat.hxx>
#include <math_Jacobi.hxx>
#include <math_Matrix.hxx>
#include <math_Vector.hxx>

#include <algorithm>
#include <cmath>

namespace Vs::Kernel {

namespace {

/// Of the extent. Corners on round surfaces are off by what meshers and files of few digits make of them.
constexpr double kFlatTolerance = 2e-5, kRoundTolerance = 1e-4;
/// A part of a circle or cylinder that bends less over its extent tells nothing about its radius.
constexpr double kFlattest = 50;
/// This many corners on a circle are no accident.
constexpr size_t kFewestCorners = 6;
/// Of the sum of the squares of all normals: what is at right angles to them all.
constexpr double kAcross = 1e-6;

/// The triangles of a face as they are placed.
struct Facets
{
    explicit Facets(const TopoDS_Face& face)
    {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull())
            return;
        const gp_Trsf& place = location.Transformation();
        for (int i = 1; i <= mesh->NbNodes(); ++i) {
            points.push_back(mesh->Node(i).Transformed(place));
            box.Add(points.back());
            middle += points.back().XYZ() / mesh->NbNodes();
        }
        const double sense = (face.Orientation() == TopAbs_REVERSED) != place.IsNegative() ? -1 : 1;
        for (int i = 1; i <= mesh->NbTriangles(); ++i) {
            int a, b, c;
            mesh->Triangle(i).Get(a, b, c);
            const gp_XYZ p = points[size_t(a) - 1].XYZ();
            areas.push_back(((points[size_t(b) - 1].XYZ() - p) ^ (points[size_t(c) - 1].XYZ() - p)) * sense);
            area += areas.back();
        }
    }
    double extent() const { return std::sqrt(box.SquareExtent()); }

    std::vector<gp_Pnt> points;
    std::vector<gp_XYZ> areas; ///< Twice the areas, along the normals.
    gp_XYZ area{0, 0, 0}, middle{0, 0, 0};
    Bnd_Box box;
};

/// The direction to which the normals stand at right angles; nothing if there is none, or any.
std::optional<gp_Dir> acrossNormals(const Facets& facets)
{
    math_Matrix sums(1, 3, 1, 3, 0.0);
    double all = 0;
    for (const gp_XYZ& area : facets.areas) {
        const double size = area.Modulus();
        if (size <= 0)
            continue;
        all += size;
        for (int i = 1; i <= 3; ++i)
            for (int k = 1; k <= 3; ++k)
                sums(i, k) += area.Coord(i) * area.Coord(k) / size;
    }
    const math_Jacobi axes(sums);
    if (!axes.IsDone() || all <= 0)
        return std::nullopt;
    int order[] = {1, 2, 3};
    std::sort(order, order + 3, [&](int a, int b) { return axes.Value(a) < axes.Value(b); });
    if (axes.Value(order[0]) > kAcross * all || axes.Value(order[1]) < kAcross * all)
        return std::nullopt;
    math_Vector axis(1, 3);
    axes.Vector(order[0], axis);
    return gp_Dir(axis(1), axis(2), axis(3));
}

/// The circle that points of a plane lie nearest to, by their squares.
std::optional<gp_Circ> circleThrough(const std::vector<gp_Pnt>& points, const gp_Ax2& plane)
{
    gp_Mat sums;
    sums.SetDiagonal(0, 0, 0);
    gp_XYZ right(0, 0, 0);
    for (const gp_Pnt& point : points) {
        const gp_Vec from(plane.Location(), point);
        const double x = from.Dot(plane.XDirection()), y = from.Dot(plane.YDirection());
        const gp_XYZ row(x, y, 1);
        for (int i = 1; i <= 3; ++i)
            for (int k = 1; k <= 3; ++k)
                sums(i, k) += row.Coord(i) * row.Coord(k);
        right += row * (x * x + y * y);
    }
    if (sums.Determinant() == 0)
        return std::nullopt;
    const gp_XYZ found = right.Multiplied(sums.Inverted());
    const double x = found.X() / 2, y = found.Y() / 2, square = found.Z() + x * x + y * y;
    if (!(square > 0))
        return std::nullopt;
    const gp_Pnt centre =
        plane.Location().Translated(gp_Vec(plane.XDirection()) * x + gp_Vec(plane.YDirection()) * y);
    return gp_Circ(gp_Ax2(centre, plane.Direction(), plane.XDirection()), std::sqrt(square));
}

} // namespace

std::optional<gp_Pln> planeOfTriangles(const TopoDS_Face& face)
{
    const Facets facets(face);
    if (facets.area.Modulus() <= 0)
        return std::nullopt;
    const gp_Pln plane(gp_Pnt(facets.middle), gp_Dir(facets.area));
    const double tolerance = kFlatTolerance * facets.extent();
    const bool flat = std::all_of(facets.points.begin(), facets.points.end(),
                                  [&](const gp_Pnt& p) { return plane.Distance(p) <= tolerance; });
    return flat ? std::optional(plane) : std::nullopt;
}

std::optional<RoundForm> cylinderOfTriangles(const TopoDS_Face& face)
{
    const Facets facets(face);
    const std::optional<gp_Dir> direction = acrossNormals(facets);
    if (!direction)
        return std::nullopt;
    const auto circle = circleThrough(facets.points, gp_Ax2(gp_Pnt(facets.middle), *direction));
    const double tolerance = kRoundTolerance * facets.extent();
    if (!circle || circle->Radius() > kFlattest * facets.extent())
        return std::nullopt;
    const gp_Lin axis(circle->Location(), *direction);
    const bool round = std::all_of(facets.points.begin(), facets.points.end(), [&](const gp_Pnt& p) {
        return std::abs(axis.Distance(p) - circle->Radius()) <= tolerance;
    });
    return round ? std::optional(RoundForm{RoundForm::Kind::Cylinder, axis.Position(), circle->Radius()})
                 : std::nullopt;
}

std::optional<gp_Circ> circleOfPolyline(const std::vector<gp_Pnt>& corners)
{
    if (corners.size() < kFewestCorners)
        return std::nullopt;
    // Of a closed one the first and the last are the same.
    const size_t third = corners.size() / 3;
    const gce_MakeCirc plane(corners[0], corners[third], corners[2 * third]);
    if (!plane.IsDone())
        return std::nullopt;
    const auto circle = circleThrough(corners, plane.Value().Position());
    Bnd_Box box;
    for (const gp_Pnt& corner : corners)
        box.Add(corner);
    const double extent = std::sqrt(box.SquareExtent());
    if (!circle || circle->Radius() > kFlattest * extent)
        return std::nullopt;
    const bool fits = std::all_of(corners.begin(), corners.end(), [&](const gp_Pnt& corner) {
        return circle->Distance(corner) <= kRoundTolerance * extent;
    });
    return fits ? circle : std::nullopt;
}

} // namespace Vs::Kernel
