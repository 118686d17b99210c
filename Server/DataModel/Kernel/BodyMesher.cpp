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

/// A shape that has no triangles yet but those of faces that are nothing else.
class BareCopy
{
public:
    explicit BareCopy(const TopoDS_Shape& shape) : m_copier(shape, false, false)
    {
        const BRep_Builder builder;
        TopLoc_Location location;
        for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
            const TopoDS_Face& face = TopoDS::Face(faces.Current());
            if (BRep_Tool::Surface(face, location).IsNull())
                builder.UpdateFace(TopoDS::Face(copyOf(face)), BRep_Tool::Triangulation(face, location));
        }
    }

    const TopoDS_Shape& shape() { return m_copier.Shape(); }
    TopoDS_Shape copyOf(const TopoDS_Shape& part) const { return m_copier.ModifiedShape(part); }

private:
    BRepBuilderAPI_Copy m_copier;
};

std::shared_ptr<BodyMesh> meshOfCopy(BareCopy copy, const ShapeColours& colours,
                                     const TranslatorRefinement& refinement,
                                     const Message_ProgressRange& progress, MeshThreads threads)
{
    meshShape(copy.shape(), refinement, progress, threads);
    if (!hasTriangles(copy.shape()))
        return nullptr;
    ShapeColours ofCopy = colours;
    for (ShapeColours::Entry& entry : ofCopy.entries)
        entry.part = copy.copyOf(entry.part);
    return std::make_shared<BodyMesh>(extractMesh(copy.shape(), ofCopy));
}

} // namespace

std::shared_ptr<const BodyMesh> meshBody(const TopoDS_Shape& shape, const ShapeColours& colours,
                                         const TranslatorRefinement& refinement,
                                         const Message_ProgressRange& progress, MeshThreads threads)
{
    std::shared_ptr<BodyMesh> mesh;
    if (refinement != TranslatorRefinement{})
        mesh = meshOfCopy(BareCopy(shape), colours, refinement, progress, threads);
    else
        meshShape(shape, refinement, progress, threads);
    if (!mesh)
        mesh = std::make_shared<BodyMesh>(extractMesh(shape, colours));
    limitTriangles(*mesh, refinement);
    return mesh;
}

} // namespace Vs::Kernel
