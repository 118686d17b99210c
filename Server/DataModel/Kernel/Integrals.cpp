#include "Server/DataModel/Kernel/Integrals.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <GeomAdaptor_Curve.hxx>

#include <cmath>

namespace Vs::Kernel {

namespace {

constexpr double kPrecision = 1e-6;

bool isRational(const Adaptor3d_Curve& curve)
{
    return (curve.GetType() == GeomAbs_BSplineCurve || curve.GetType() == GeomAbs_BezierCurve) &&
           curve.IsRational();
}

bool isRational(const BRepAdaptor_Surface& surface)
{
    switch (surface.GetType()) {
    case GeomAbs_BSplineSurface:
    case GeomAbs_BezierSurface:
        return surface.IsURational() || surface.IsVRational();
    case GeomAbs_SurfaceOfExtrusion:
    case GeomAbs_SurfaceOfRevolution:
        return isRational(*surface.BasisCurve());
    default:
        return false;
    }
}

bool hasRationalFaces(const TopoDS_Shape& shape)
{
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        if (const TopoDS_Face& face = TopoDS::Face(faces.Current());
            !BRep_Tool::Surface(face).IsNull() && isRational(BRepAdaptor_Surface(face, false)))
            return true;
    return false;
}

// On rational splines, what the kernel finds is two or three times less exact than what it was asked for. So
// it is asked for more there, until two answers agree.
template <class Integrate>
GProp_GProps integrated(const TopoDS_Shape& shape, Integrate&& integrate)
{
    constexpr double kFirst = 1e-8, kFiner = 1e-2;
    constexpr int kMost = 3;
    if (!hasRationalFaces(shape))
        return integrate(kPrecision);
    double precision = kFirst;
    GProp_GProps found = integrate(precision);
    for (int i = 0; i < kMost; ++i) {
        const double before = found.Mass();
        found = integrate(precision *= kFiner);
        if (std::abs(found.Mass() - before) <= kPrecision / 2 * std::abs(found.Mass()))
            break;
    }
    return found;
}

} // namespace

GProp_GProps integratedArea(const TopoDS_Shape& shape)
{
    return integrated(shape, [&](double precision) {
        GProp_GProps properties;
        BRepGProp::SurfaceProperties(shape, properties, precision);
        return properties;
    });
}

GProp_GProps integratedVolume(const TopoDS_Shape& shape)
{
    return integrated(shape, [&](double precision) {
        GProp_GProps properties;
        BRepGProp::VolumeProperties(shape, properties, precision);
        return properties;
    });
}

} // namespace Vs::Kernel
