#include "Server/DataModel/Kernel/KernelDistance.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <TopoDS.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Lin.hxx>
#include <gp_Pln.hxx>

#include <algorithm>
#include <cmath>

namespace Vs::Kernel {

namespace {

/// Over a metre, a ten-millionth of a millimetre.
constexpr double kParallel = 1e-10;

double betweenCylinders(const gp_Cylinder& first, const gp_Cylinder& second)
{
    if (!first.Axis().IsParallel(second.Axis(), kParallel))
        return 0;
    const double apart = gp_Lin(first.Axis()).Distance(second.Location());
    return std::max(
        {apart - first.Radius() - second.Radius(), std::abs(first.Radius() - second.Radius()) - apart, 0.0});
}

double fromPlane(const gp_Pln& plane, const BRepAdaptor_Surface& other)
{
    const gp_Dir normal = plane.Axis().Direction();
    if (other.GetType() == GeomAbs_Plane && normal.IsParallel(other.Plane().Axis().Direction(), kParallel))
        return plane.Distance(other.Plane().Location());
    if (other.GetType() == GeomAbs_Cylinder &&
        normal.IsNormal(other.Cylinder().Axis().Direction(), kParallel))
        return std::max(plane.Distance(other.Cylinder().Location()) - other.Cylinder().Radius(), 0.0);
    return 0;
}

} // namespace

std::optional<ShortestDistance> kernelDistance(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    const BRepExtrema_DistShapeShape extrema(first, second);
    if (!extrema.IsDone() || extrema.NbSolution() < 1)
        return std::nullopt;
    return ShortestDistance{extrema.Value(), extrema.PointOnShape1(1), extrema.PointOnShape2(1)};
}

double leastBySurfaces(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    if (first.ShapeType() != TopAbs_FACE || second.ShapeType() != TopAbs_FACE)
        return 0;
    const BRepAdaptor_Surface one(TopoDS::Face(first), false), other(TopoDS::Face(second), false);
    if (one.GetType() == GeomAbs_Plane)
        return fromPlane(one.Plane(), other);
    if (other.GetType() == GeomAbs_Plane)
        return fromPlane(other.Plane(), one);
    return one.GetType() == GeomAbs_Cylinder && other.GetType() == GeomAbs_Cylinder
               ? betweenCylinders(one.Cylinder(), other.Cylinder())
               : 0;
}

} // namespace Vs::Kernel
