#include "Server/DataModel/Kernel/Integrals.h"

#include "Server/Body/BodyProperties.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepBuilderAPI_Copy.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepGProp.hxx>
#include <BRep_Builder.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Precision.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>

#include <cmath>

namespace Vs::Kernel {

namespace {

constexpr double kPrecision = 1e-6;

GeomAbs_SurfaceType typeOf(const TopoDS_Face& face)
{
    return BRep_Tool::Surface(face).IsNull() ? GeomAbs_OtherSurface
                                             : BRepAdaptor_Surface(face, false).GetType();
}

bool isElementary(GeomAbs_SurfaceType type)
{
    return type == GeomAbs_Plane || type == GeomAbs_Cylinder || type == GeomAbs_Cone ||
           type == GeomAbs_Sphere || type == GeomAbs_Torus;
}

/// Whether the weights of poles that follow each other in a direction differ.
bool weightsVary(const Geom_BSplineSurface& surface, bool alongU)
{
    for (int i = 1; i <= surface.NbUPoles() - (alongU ? 1 : 0); ++i)
        for (int k = 1; k <= surface.NbVPoles() - (alongU ? 0 : 1); ++k)
            if (std::abs(surface.Weight(i, k) - surface.Weight(i + (alongU ? 1 : 0), k + (alongU ? 0 : 1))) >
                Precision::Confusion())
                return true;
    return false;
}

/// Splits each knot span into several without changing the shape.
void splitSpans(Geom_BSplineSurface& surface, bool alongU, int pieces)
{
    const int knots = alongU ? surface.NbUKnots() : surface.NbVKnots();
    const auto knot = [&](int i) { return alongU ? surface.UKnot(i) : surface.VKnot(i); };
    TColStd_Array1OfReal added(1, (knots - 1) * (pieces - 1));
    TColStd_Array1OfInteger multiplicities(1, added.Upper());
    multiplicities.Init(1);
    int at = 0;
    for (int i = 1; i < knots; ++i)
        for (int k = 1; k < pieces; ++k)
            added.SetValue(++at, knot(i) + (knot(i + 1) - knot(i)) * k / pieces);
    if (alongU)
        surface.InsertUKnots(added, multiplicities, 0, false);
    else
        surface.InsertVKnots(added, multiplicities, 0, false);
}

/// The same face as a spline surface of shorter spans.
TopoDS_Shape inSpans(const TopoDS_Face& face, int pieces)
{
    // A face that is a spline already keeps its surface, which is the model's.
    const bool known = typeOf(face) == GeomAbs_BSplineSurface;
    const TopoDS_Shape spline =
        known ? BRepBuilderAPI_Copy(face, true, false).Shape() : BRepBuilderAPI_NurbsConvert(face).Shape();
    TopLoc_Location location;
    const auto surface =
        Handle(Geom_BSplineSurface)::DownCast(BRep_Tool::Surface(TopoDS::Face(spline), location));
    if (surface.IsNull())
        return face;
    for (const bool alongU : {true, false})
        if (weightsVary(*surface, alongU))
            splitSpans(*surface, alongU, pieces);
    return spline;
}

/// Into how many pieces a face's spans are to be split; 1 if it can stay as it is. A volume has no roots in
/// it, and is found more easily.
int piecesFor(const TopoDS_Face& face, GeomAbs_SurfaceType type, BodyMeasure what)
{
    if (type == GeomAbs_SurfaceOfExtrusion)
        return 4;
    if (what == BodyMeasure::Volume || (type != GeomAbs_BSplineSurface && type != GeomAbs_BezierSurface))
        return 1;
    const BRepAdaptor_Surface surface(face, false);
    return surface.IsURational() || surface.IsVRational() ? 2 : 1;
}

/// What is integrated instead of a shape, and the precision that the kernel is to be asked for.
struct Integrand
{
    TopoDS_Shape shape;
    double precision = kPrecision;
};

// The kernel integrates each span of a spline with a few points, and what is extruded as if it were one span,
// however exact it is to be: the area of an extruded ellipse was wrong by some hundredths, that of the same
// as a spline by a thousandth. On shorter spans it keeps what is promised. What it finds of other surfaces
// that aren't elementary is up to ten times less exact than it was asked for.
Integrand integrandFor(const TopoDS_Shape& shape, BodyMeasure what)
{
    Integrand integrand{shape};
    TopoDS_Compound faces;
    const BRep_Builder builder;
    builder.MakeCompound(faces);
    for (TopExp_Explorer each(shape, TopAbs_FACE); each.More(); each.Next()) {
        const TopoDS_Face& face = TopoDS::Face(each.Current());
        const GeomAbs_SurfaceType type = typeOf(face);
        if (!isElementary(type))
            integrand.precision = kPrecision / 100;
        const int pieces = piecesFor(face, type, what);
        builder.Add(faces, pieces > 1 ? inSpans(face, pieces) : TopoDS_Shape(face));
        if (pieces > 1)
            integrand.shape = faces;
    }
    return integrand;
}

} // namespace

GProp_GProps integratedArea(const TopoDS_Shape& shape)
{
    const Integrand integrand = integrandFor(shape, BodyMeasure::Area);
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(integrand.shape, properties, integrand.precision);
    return properties;
}

GProp_GProps integratedVolume(const TopoDS_Shape& shape)
{
    const Integrand integrand = integrandFor(shape, BodyMeasure::Volume);
    GProp_GProps properties;
    BRepGProp::VolumeProperties(integrand.shape, properties, integrand.precision);
    return properties;
}

} // namespace Vs::Kernel
