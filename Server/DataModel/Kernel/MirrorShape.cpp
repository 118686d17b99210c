#include "Server/DataModel/Kernel/MirrorShape.h"

#include "Server/DataModel/Kernel/LongWork.h"

#include <BRepBuilderAPI_Transform.hxx>
#include <BRep_Builder.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_DataMapOfShapeShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Iterator.hxx>

#include <memory>
#include <optional>
#include <utility>

namespace Vs::Kernel {

namespace {

bool isOfTriangles(const TopoDS_Face& face)
{
    TopLoc_Location location;
    return BRep_Tool::Surface(face, location).IsNull();
}

bool hasFacesOfTriangles(const TopoDS_Shape& shape)
{
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        if (isOfTriangles(TopoDS::Face(faces.Current())))
            return true;
    return false;
}

// The order of the corners tells which side of the triangles is the outer one, and a mirror reverses it.
Handle(Poly_Triangulation) imageOf(const Poly_Triangulation& mesh, const gp_Trsf& motion)
{
    Handle(Poly_Triangulation) image =
        new Poly_Triangulation(mesh.NbNodes(), mesh.NbTriangles(), false, mesh.HasNormals());
    image->Deflection(mesh.Deflection());
    for (int i = 1; i <= mesh.NbNodes(); ++i) {
        image->SetNode(i, mesh.Node(i).Transformed(motion));
        if (mesh.HasNormals())
            image->SetNormal(i, mesh.Normal(i).Transformed(motion));
    }
    for (int i = 1; i <= mesh.NbTriangles(); ++i) {
        int a, b, c;
        mesh.Triangle(i).Get(a, b, c);
        if (motion.IsNegative())
            std::swap(b, c);
        image->SetTriangle(i, Poly_Triangle(a, b, c));
    }
    return image;
}

// The kernel's transformation takes it for granted that each face has a surface, so it gets only what has.
class Image
{
public:
    explicit Image(const gp_Trsf& mirror) : m_mirror(mirror) {}

    TopoDS_Shape of(const TopoDS_Shape& shape)
    {
        if (!hasFacesOfTriangles(shape)) {
            m_exact.emplace_back(shape, m_mirror, true);
            return m_exact.back().Shape();
        }
        TopoDS_Shape image =
            shape.ShapeType() == TopAbs_FACE ? ofTriangles(TopoDS::Face(shape)) : ofParts(shape);
        m_images.Bind(shape, image);
        return image;
    }

    std::vector<TopoDS_Shape> successors(const TopoDS_Shape& part) const
    {
        if (const TopoDS_Shape* image = m_images.Seek(part))
            return {*image};
        for (const BRepBuilderAPI_Transform& exact : m_exact) {
            try {
                // Not const in the kernel, though it changes nothing.
                return {const_cast<BRepBuilderAPI_Transform&>(exact).ModifiedShape(part)};
            } catch (const Standard_Failure&) {
                // No part of what that one has made.
            }
        }
        return {};
    }

private:
    TopoDS_Shape ofTriangles(const TopoDS_Face& face) const
    {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
        TopoDS_Face image;
        const BRep_Builder builder;
        builder.MakeFace(image);
        if (!mesh.IsNull())
            builder.UpdateFace(image, imageOf(*mesh, m_mirror * location.Transformation()));
        image.Orientation(face.Orientation());
        return image;
    }

    TopoDS_Shape ofParts(const TopoDS_Shape& shape)
    {
        TopoDS_Shape image = shape.EmptyCopied().Located({});
        const BRep_Builder builder;
        for (TopoDS_Iterator parts(shape, false, true); parts.More(); parts.Next())
            builder.Add(image, of(parts.Value()));
        image.Closed(shape.Closed());
        return image;
    }

    gp_Trsf m_mirror;
    TopTools_DataMapOfShapeShape m_images;
    std::vector<BRepBuilderAPI_Transform> m_exact;
};

} // namespace

MadeShape mirrored(const TopoDS_Shape& shape, const gp_Trsf& mirror, const std::wstring& name)
{
    if (shape.IsNull())
        throw EditError(EditFault::NoBody, name);
    std::shared_ptr<Image> image;
    TopoDS_Shape result;
    const LongWorkEnd end = runLongWork(name, [&](const Handle(Message_ProgressIndicator)&) {
        try {
            const auto made = std::make_shared<Image>(mirror);
            result = made->of(shape);
            image = made;
        } catch (const Standard_Failure&) {
            // Told below.
        }
    });
    if (end.fault)
        throw EditError(*end.fault, name);
    if (result.IsNull())
        throw EditError(EditFault::Refused, name);
    return {result, [image](const TopoDS_Shape& part) { return image->successors(part); }};
}

} // namespace Vs::Kernel
