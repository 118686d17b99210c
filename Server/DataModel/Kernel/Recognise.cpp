#include "Server/DataModel/Kernel/Recognise.h"

#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRep_Tool.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <gp_Ax3.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Pln.hxx>
#include <gp_Sphere.hxx>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Vs::Kernel {

namespace {

using Recognised = ModelKernel::Recognised;

/// Directions that differ by less are the same; so are places no further apart, as a fraction of the solid's
/// size.
constexpr double kTolerance = 1e-6;

/// The planes of one direction: where they lie along it.
struct Planes
{
    gp_Dir normal;
    std::vector<double> places;
};

/// The surfaces that a solid lies in, each once.
struct Surfaces
{
    std::vector<Planes> planes;
    std::vector<gp_Cylinder> cylinders;
    std::vector<gp_Sphere> spheres;
};

bool isNear(double a, double b)
{
    return std::abs(a - b) <= kTolerance * std::max({1.0, std::abs(a), std::abs(b)});
}

bool isNear(const gp_Pnt& a, const gp_Pnt& b, double size)
{
    return a.Distance(b) <= kTolerance * std::max(1.0, size);
}

void add(std::vector<Planes>& all, const gp_Pln& plane)
{
    const gp_Dir normal = plane.Axis().Direction();
    auto found = std::find_if(all.begin(), all.end(),
                              [&](const Planes& each) { return each.normal.IsParallel(normal, kTolerance); });
    if (found == all.end())
        found = all.insert(all.end(), {normal, {}});
    const double place = gp_Vec(gp::Origin(), plane.Location()).Dot(found->normal);
    auto& places = found->places;
    if (std::none_of(places.begin(), places.end(), [&](double each) { return isNear(each, place); }))
        places.push_back(place);
}

void add(std::vector<gp_Cylinder>& all, const gp_Cylinder& cylinder)
{
    for (const gp_Cylinder& each : all)
        if (isNear(each.Radius(), cylinder.Radius()) &&
            each.Axis().Direction().IsParallel(cylinder.Axis().Direction(), kTolerance) &&
            gp_Lin(each.Axis()).Distance(cylinder.Location()) <= kTolerance * std::max(1.0, each.Radius()))
            return;
    all.push_back(cylinder);
}

void add(std::vector<gp_Sphere>& all, const gp_Sphere& sphere)
{
    for (const gp_Sphere& each : all)
        if (isNear(each.Radius(), sphere.Radius()) &&
            isNear(each.Location(), sphere.Location(), each.Radius()))
            return;
    all.push_back(sphere);
}

/// Nothing if a face lies in a surface of another kind.
std::optional<Surfaces> surfacesOf(const TopoDS_Shape& solid)
{
    Surfaces result;
    for (TopExp_Explorer each(solid, TopAbs_FACE); each.More(); each.Next()) {
        const BRepAdaptor_Surface surface(TopoDS::Face(each.Current()), false);
        switch (surface.GetType()) {
        case GeomAbs_Plane:
            add(result.planes, surface.Plane());
            break;
        case GeomAbs_Cylinder:
            add(result.cylinders, surface.Cylinder());
            break;
        case GeomAbs_Sphere:
            add(result.spheres, surface.Sphere());
            break;
        default:
            return std::nullopt;
        }
    }
    return result;
}

/// The solid, if the shape is one alone, with one closed skin; else a null shape.
TopoDS_Shape onlySolid(const TopoDS_Shape& shape)
{
    TopExp_Explorer solids(shape, TopAbs_SOLID);
    if (!solids.More())
        return {};
    const TopoDS_Shape solid = solids.Current();
    solids.Next();
    TopExp_Explorer shells(solid, TopAbs_SHELL);
    if (solids.More() || TopExp_Explorer(shape, TopAbs_FACE, TopAbs_SOLID).More() || !shells.More() ||
        !BRep_Tool::IsClosed(shells.Current()))
        return {};
    shells.Next();
    return shells.More() ? TopoDS_Shape() : solid;
}

GkMatrix3d placementOf(const gp_Ax3& axes)
{
    gp_Trsf motion;
    motion.SetDisplacement(gp_Ax3(), axes);
    return toMatrix(motion);
}

std::optional<Recognised> sphereOf(const Surfaces& surfaces)
{
    if (surfaces.spheres.size() != 1 || !surfaces.cylinders.empty() || !surfaces.planes.empty())
        return std::nullopt;
    const gp_Sphere& sphere = surfaces.spheres.front();
    return Recognised{ModelKernel::Primitive::Sphere,
                      placementOf(gp_Ax3(sphere.Location(), gp::DZ())),
                      {sphere.Radius(), 0, 0}};
}

std::optional<Recognised> cylinderOf(const Surfaces& surfaces)
{
    if (surfaces.cylinders.size() != 1 || !surfaces.spheres.empty() || surfaces.planes.size() != 1 ||
        surfaces.planes.front().places.size() != 2)
        return std::nullopt;
    const gp_Cylinder& cylinder = surfaces.cylinders.front();
    const Planes& ends = surfaces.planes.front();
    if (!ends.normal.IsParallel(cylinder.Axis().Direction(), kTolerance))
        return std::nullopt;
    const auto [low, high] = std::minmax(ends.places[0], ends.places[1]);
    const double middle = gp_Vec(gp::Origin(), cylinder.Location()).Dot(ends.normal);
    const gp_Pnt base = cylinder.Location().Translated(gp_Vec(ends.normal) * (low - middle));
    return Recognised{ModelKernel::Primitive::Cylinder,
                      placementOf(gp_Ax3(base, ends.normal)),
                      {cylinder.Radius(), high - low, 0}};
}

std::optional<Recognised> boxOf(const Surfaces& surfaces)
{
    const auto& planes = surfaces.planes;
    if (planes.size() != 3 || !surfaces.spheres.empty() || !surfaces.cylinders.empty())
        return std::nullopt;
    gp_XYZ corner;
    double sizes[3];
    for (size_t i = 0; i < 3; ++i) {
        if (planes[i].places.size() != 2 ||
            !planes[i].normal.IsNormal(planes[(i + 1) % 3].normal, kTolerance))
            return std::nullopt;
        const auto [low, high] = std::minmax(planes[i].places[0], planes[i].places[1]);
        corner += planes[i].normal.XYZ() * low;
        sizes[i] = high - low;
    }
    // Where the three don't make a right-handed frame, the box begins at the other end of one.
    gp_Ax3 axes(gp_Pnt(corner), planes[2].normal, planes[0].normal);
    if (axes.YDirection().IsOpposite(planes[1].normal, kTolerance))
        axes.SetLocation(gp_Pnt(corner + planes[1].normal.XYZ() * sizes[1]));
    return Recognised{ModelKernel::Primitive::Box, placementOf(axes), {sizes[0], sizes[1], sizes[2]}};
}

} // namespace

// A closed skin that lies in nothing but one sphere, one cylinder with the planes across it, or three pairs
// of planes at right angles can be no other solid.
std::optional<Recognised> recognise(const TopoDS_Shape& shape)
{
    const TopoDS_Shape solid = onlySolid(shape);
    const std::optional<Surfaces> surfaces = solid.IsNull() ? std::nullopt : surfacesOf(solid);
    if (!surfaces)
        return std::nullopt;
    for (const auto& kind : {sphereOf, cylinderOf, boxOf})
        if (const std::optional<Recognised> found = kind(*surfaces))
            return found;
    return std::nullopt;
}

} // namespace Vs::Kernel
