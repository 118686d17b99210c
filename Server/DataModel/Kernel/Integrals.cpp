#include "Server/DataModel/Kernel/Integrals.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <GeomAdaptor_Curve.hxx>

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

// On rational splines, what the kernel finds is up to three times less exact than it was asked for; asked for
// a hundredth, it is five times more exact than is promised, for a tenth to a third more of time.
double precisionFor(const TopoDS_Shape& shape)
{
    return hasRationalFaces(shape) ? kPrecision / 100 : kPrecision;
}

} // namespace

GProp_GProps integratedArea(const TopoDS_Shape& shape)
{
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(shape, properties, precisionFor(shape));
    return properties;
}

GProp_GProps integratedVolume(const TopoDS_Shape& shape)
{
    GProp_GProps properties;
    BRepGProp::VolumeProperties(shape, properties, precisionFor(shape));
    return properties;
}

} // namespace Vs::Kernel
