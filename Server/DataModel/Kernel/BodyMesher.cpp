#include "Server/DataModel/Kernel/BodyMesher.h"

#include "Server/DataModel/Kernel/TriangleLimits.h"

#include <BRepBuilderAPI_Copy.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

namespace Vs::Kernel {

namespace {

std::shared_ptr<BodyMesh> meshOfCopy(const LooseBody& copy, const TranslatorRefinement& refinement,
                                     const Message_ProgressRange& progress, MeshThreads threads)
{
    meshShape(copy.shape, refinement, progress, threads);
    if (!hasTriangles(copy.shape))
        return nullptr;
    return std::make_shared<BodyMesh>(extractMesh(copy.shape, copy.colours));
}

} // namespace

LooseBody looseBody(const TopoDS_Shape& shape, const ShapeColours& colours)
{
    BRepBuilderAPI_Copy copier(shape, false, false);
    const BRep_Builder builder;
    TopLoc_Location location;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        if (BRep_Tool::Surface(face, location).IsNull())
            builder.UpdateFace(TopoDS::Face(copier.ModifiedShape(face)),
                               BRep_Tool::Triangulation(face, location));
    }
    LooseBody copy{copier.Shape(), colours};
    for (ShapeColours::Entry& entry : copy.colours.entries)
        entry.part = copier.ModifiedShape(entry.part);
    return copy;
}

std::shared_ptr<const BodyMesh> meshBody(const TopoDS_Shape& shape, const ShapeColours& colours,
                                         const TranslatorRefinement& refinement,
                                         const Message_ProgressRange& progress, MeshThreads threads)
{
    std::shared_ptr<BodyMesh> mesh;
    if (refinement != TranslatorRefinement{})
        mesh = meshOfCopy(looseBody(shape, colours), refinement, progress, threads);
    else
        meshShape(shape, refinement, progress, threads);
    if (!mesh)
        mesh = std::make_shared<BodyMesh>(extractMesh(shape, colours));
    limitTriangles(*mesh, refinement);
    return mesh;
}

} // namespace Vs::Kernel
