#include "Server/DataModel/Kernel/RoundForm.h"

#include "Server/DataModel/Kernel/TriangleForm.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepLProp_SLProps.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Precision.hxx>
#include <gce_MakeCirc.hxx>
#include <gp_Lin.hxx>
#include <gp_Mat.hxx>
#include <gp_Pln.hxx>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Vs::Kernel {

namespace {

/// Of the extent of what is looked at.
constexpr double kTolerance = 1e-6;
/// A curve that bends less over its extent doesn't determine its radius.
constexpr double kFlattest = 1e3;

/// A place on a surface, with what tells how it is bent there.
struct Sample
{
    gp_Pnt point;
    gp_Dir normal;
    double bend[2];      ///< The principal curvatures; the centres lie at the normal divided by them.
    gp_Dir direction[2]; ///< Those in which it bends that way.

    gp_Pnt centre(int which) const { return point.Translated(gp_Vec(normal) / bend[which]); }
};

struct Samples
{
    std::vector<Sample> all;
    double tolerance = 0;
};

// Some way off the borders, where splines come together in poles.
Samples samplesOf(const TopoDS_Face& face, const BRepAdaptor_Surface& surface)
{
    constexpr int kRows = 6;
    Samples samples;
    double u1, u2, v1, v2;
    BRepTools::UVBounds(face, u1, u2, v1, v2);
    if (Precision::IsInfinite(u1) || Precision::IsInfinite(u2) || Precision::IsInfinite(v1) ||
        Precision::IsInfinite(v2))
        return samples;
    Bnd_Box box;
    for (int i = 0; i < kRows; ++i)
        for (int k = 0; k < kRows; ++k) {
            BRepLProp_SLProps at(surface, u1 + (u2 - u1) * (i + 0.5) / kRows,
                                 v1 + (v2 - v1) * (k + 0.5) / kRows, 2, Precision::Confusion());
            if (!at.IsNormalDefined() || !at.IsCurvatureDefined())
                return {};
            Sample sample{at.Value(), at.Normal(), {at.MaxCurvature(), at.MinCurvature()}, {}};
            if (!at.IsUmbilic())
                at.CurvatureDirections(sample.direction[0], sample.direction[1]);
            samples.all.push_back(sample);
            box.Add(sample.point);
        }
    samples.tolerance = kTolerance * std::sqrt(box.SquareExtent());
    return samples;
}

template <class Distance>
bool allLie(const Samples& samples, Distance&& distance)
{
    return std::all_of(samples.all.begin(), samples.all.end(),
                       [&](const Sample& sample) { return std::abs(distance(sample)) <= samples.tolerance; });
}

/// Whether something bends enough for its radius to be determined.
bool isBent(double bend, const Samples& samples)
{
    return std::abs(bend) * kFlattest * samples.tolerance / kTolerance > 1;
}

std::optional<RoundForm> asSphere(const Samples& samples)
{
    const Sample& first = samples.all.front();
    if (!isBent(first.bend[0], samples))
        return std::nullopt;
    const gp_Pnt centre = first.centre(0);
    const double radius = 1 / std::abs(first.bend[0]);
    if (!allLie(samples, [&](const Sample& each) { return each.point.Distance(centre) - radius; }))
        return std::nullopt;
    return RoundForm{RoundForm::Kind::Sphere, gp_Ax1(centre, gp::DZ()), radius};
}

std::optional<RoundForm> asCylinder(const Samples& samples)
{
    const Sample& first = samples.all.front();
    const int round = std::abs(first.bend[0]) > std::abs(first.bend[1]) ? 0 : 1;
    if (!isBent(first.bend[round], samples) || isBent(first.bend[1 - round], samples))
        return std::nullopt;
    const gp_Lin axis(first.centre(round), first.direction[1 - round]);
    const double radius = 1 / std::abs(first.bend[round]);
    if (!allLie(samples, [&](const Sample& each) { return axis.Distance(each.point) - radius; }))
        return std::nullopt;
    return RoundForm{RoundForm::Kind::Cylinder, axis.Position(), radius};
}

// The tangent planes of a cone all go through its tip, and its normals all stand at one angle to its axis.
std::optional<RoundForm> asCone(const Samples& samples)
{
    const Sample &a = samples.all.front(), &b = samples.all[samples.all.size() / 2], &c = samples.all.back();
    const gp_XYZ n[] = {a.normal.XYZ(), b.normal.XYZ(), c.normal.XYZ()};
    gp_XYZ across = (n[1] - n[0]) ^ (n[2] - n[0]);
    const gp_Mat planes(n[0].X(), n[0].Y(), n[0].Z(), n[1].X(), n[1].Y(), n[1].Z(), n[2].X(), n[2].Y(),
                        n[2].Z());
    if (across.Modulus() < kTolerance || std::abs(planes.Determinant()) < kTolerance)
        return std::nullopt;
    const gp_Pnt tip(gp_XYZ(n[0] * a.point.XYZ(), n[1] * b.point.XYZ(), n[2] * c.point.XYZ())
                         .Multiplied(planes.Inverted()));
    const gp_Lin axis(tip, gp_Dir(across));
    const double slope = axis.Distance(a.point) / a.point.Distance(tip);
    if (!allLie(samples, [&](const Sample& each) {
            return axis.Distance(each.point) - slope * each.point.Distance(tip);
        }))
        return std::nullopt;
    return RoundForm{RoundForm::Kind::Cone, axis.Position(), 0};
}

std::optional<RoundForm> asTorus(const Samples& samples, int tube)
{
    const double bend = samples.all.front().bend[tube];
    if (!isBent(bend, samples))
        return std::nullopt;
    const auto centre = [&](size_t i) {
        const Sample& sample = samples.all[i];
        return sample.point.Translated(gp_Vec(sample.normal) / bend);
    };
    const gce_MakeCirc made(centre(0), centre(samples.all.size() / 2), centre(samples.all.size() - 1));
    if (!made.IsDone() || made.Value().Radius() < samples.tolerance)
        return std::nullopt;
    const gp_Circ middle = made.Value();
    if (!allLie(samples,
                [&](const Sample& each) { return middle.Distance(each.point) - 1 / std::abs(bend); }))
        return std::nullopt;
    return RoundForm{RoundForm::Kind::Torus, middle.Axis(), 1 / std::abs(bend)};
}

std::optional<RoundForm> fitted(const TopoDS_Face& face, const BRepAdaptor_Surface& surface)
{
    const Samples samples = samplesOf(face, surface);
    if (samples.all.empty())
        return std::nullopt;
    if (const auto sphere = asSphere(samples))
        return sphere;
    if (const auto cylinder = asCylinder(samples))
        return cylinder;
    for (const int tube : {0, 1})
        if (const auto torus = asTorus(samples, tube))
            return torus;
    return asCone(samples);
}

} // namespace

std::optional<RoundForm> roundFormOf(const TopoDS_Face& face)
{
    if (BRep_Tool::Surface(face).IsNull())
        return cylinderOfTriangles(face);
    const BRepAdaptor_Surface surface(face, false);
    switch (surface.GetType()) {
    case GeomAbs_Cylinder:
        return RoundForm{RoundForm::Kind::Cylinder, surface.Cylinder().Axis(), surface.Cylinder().Radius()};
    case GeomAbs_Cone:
        return RoundForm{RoundForm::Kind::Cone, surface.Cone().Axis(), 0};
    case GeomAbs_Sphere:
        return RoundForm{RoundForm::Kind::Sphere, surface.Sphere().Position().Axis(),
                         surface.Sphere().Radius()};
    case GeomAbs_Torus:
        return RoundForm{RoundForm::Kind::Torus, surface.Torus().Axis(), surface.Torus().MinorRadius()};
    case GeomAbs_Plane:
        return std::nullopt;
    default:
        return fitted(face, surface);
    }
}

std::optional<gp_Circ> circleOf(const BRepAdaptor_Curve& curve)
{
    if (curve.GetType() == GeomAbs_Circle)
        return curve.Circle();
    if (curve.GetType() == GeomAbs_Line || curve.GetType() == GeomAbs_Ellipse ||
        Precision::IsInfinite(curve.FirstParameter()) || Precision::IsInfinite(curve.LastParameter()))
        return std::nullopt;
    if (curve.GetType() == GeomAbs_BSplineCurve && curve.BSpline()->Degree() == 1) {
        const Handle(Geom_BSplineCurve) polyline = curve.BSpline();
        const TColgp_Array1OfPnt& corners = polyline->Poles();
        return circleOfPolyline({corners.begin(), corners.end()});
    }
    // An odd number, so that a closed curve doesn't give the same three points again.
    constexpr int kPoints = 33;
    std::vector<gp_Pnt> points;
    Bnd_Box box;
    for (int i = 0; i < kPoints; ++i) {
        points.push_back(curve.Value(curve.FirstParameter() +
                                     (curve.LastParameter() - curve.FirstParameter()) * i / kPoints));
        box.Add(points.back());
    }
    const double extent = std::sqrt(box.SquareExtent());
    const gce_MakeCirc made(points[0], points[kPoints / 3], points[2 * kPoints / 3]);
    if (!made.IsDone() || made.Value().Radius() > kFlattest * extent)
        return std::nullopt;
    const gp_Circ circle = made.Value();
    const bool fits = std::all_of(points.begin(), points.end(), [&](const gp_Pnt& point) {
        return circle.Distance(point) <= kTolerance * extent;
    });
    return fits ? std::optional(circle) : std::nullopt;
}

} // namespace Vs::Kernel
