#include "Server/DataModel/Kernel/XdeModel.h"

#include <BRepGProp.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <GProp_GProps.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>

#include <cmath>

namespace Vs::Kernel {

namespace {

constexpr double kPrecision = 1e-6;

// A face that was read as triangles has no surface that the kernel could integrate.
bool onlyTriangles(const TopoDS_Face& face)
{
    return BRep_Tool::Surface(face).IsNull();
}

double areaOf(const TopoDS_Shape& shape)
{
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(shape, properties, kPrecision);
    return std::abs(properties.Mass());
}

void addTriangles(const TopoDS_Face& face, BodyProperties& result)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
    if (mesh.IsNull())
        return;
    for (int i = 1; i <= mesh->NbTriangles(); ++i) {
        int a, b, c;
        mesh->Triangle(i).Get(a, b, c);
        const gp_XYZ p = mesh->Node(a).XYZ(), q = mesh->Node(b).XYZ(), r = mesh->Node(c).XYZ();
        result.area += ((q - p) ^ (r - p)).Modulus() / 2;
        result.volume += p * (q ^ r) / 6;
    }
}

} // namespace

BodyProperties measureShape(const TopoDS_Shape& shape)
{
    BodyProperties result;
    TopTools_IndexedMapOfShape faces, solidFaces, solids;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    result.faces = faces.Extent();
    for (TopExp_Explorer each(shape, TopAbs_SOLID); each.More(); each.Next())
        solids.Add(each.Current());
    result.solids = solids.Extent();

    for (int i = 1; i <= solids.Extent(); ++i) {
        GProp_GProps properties;
        BRepGProp::VolumeProperties(solids(i), properties, kPrecision);
        // A solid that was written inside out has a negative volume, and still takes that room.
        result.volume += std::abs(properties.Mass());
        result.area += areaOf(solids(i));
        TopExp::MapShapes(solids(i), TopAbs_FACE, solidFaces);
    }
    BodyProperties triangles;
    for (int i = 1; i <= faces.Extent(); ++i) {
        const TopoDS_Face& face = TopoDS::Face(faces(i));
        if (solidFaces.Contains(face))
            continue;
        if (onlyTriangles(face))
            addTriangles(face, triangles);
        else
            (result.solids > 0 ? result.freeArea : result.area) += areaOf(face);
    }
    result.area += triangles.area;
    result.volume += std::abs(triangles.volume);
    return result;
}

} // namespace Vs::Kernel
