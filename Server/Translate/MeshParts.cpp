#include "Server/Translate/MeshParts.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/TriangleMesh.h"

#include <Quantity_ColorRGBA.hxx>

#include <BRep_Tool.hxx>
#include <Geom_Surface.hxx>
#include <Poly_Triangulation.hxx>
#include <TDF_ChildIterator.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_VisMaterial.hxx>
#include <XCAFDoc_VisMaterialTool.hxx>

#include <algorithm>
#include <cmath>

namespace Vs::Translate {

namespace {

void coloursOfMaterials(const Handle(TDocStd_Document) & document)
{
    const Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(document->Main());
    const Handle(XCAFDoc_VisMaterialTool) materials = XCAFDoc_DocumentTool::VisMaterialTool(document->Main());
    const TDF_Label shapes = XCAFDoc_DocumentTool::ShapesLabel(document->Main());
    for (TDF_ChildIterator each(shapes, true); each.More(); each.Next()) {
        const Handle(XCAFDoc_VisMaterial) material = materials->GetShapeMaterial(each.Value());
        if (!material.IsNull() && !material->IsEmpty())
            colours->SetColor(each.Value(), material->BaseColor(), XCAFDoc_ColorSurf);
    }
}

struct Kinds
{
    bool exact = false;   ///< At least one face lies on a surface.
    bool normals = false; ///< All faces with triangles have normals.
};

Kinds kindsOf(const TopoDS_Shape& shape)
{
    Kinds kinds;
    bool any = false, all = true;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        TopLoc_Location location;
        kinds.exact |= !BRep_Tool::Surface(face, location).IsNull();
        const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
        if (triangulation.IsNull())
            continue;
        any = true;
        all = all && triangulation->HasNormals();
    }
    kinds.normals = any && all;
    return kinds;
}

std::vector<float> cornersOf(const BodyMesh& mesh)
{
    std::vector<float> corners;
    corners.reserve(mesh.triangles.size() * 3);
    for (const uint32_t vertex : mesh.triangles)
        for (int axis = 0; axis < 3; ++axis)
            corners.push_back(mesh.positions[size_t(vertex) * 3 + axis]);
    return corners;
}

std::shared_ptr<const BodyMesh> meshOf(const TopoDS_Shape& shape, const Kernel::ShapeColours& colours)
{
    const Kinds kinds = kindsOf(shape);
    if (kinds.exact) {
        Kernel::meshShape(shape, {});
        return std::make_shared<const BodyMesh>(Kernel::extractMesh(shape, colours));
    }
    auto mesh = std::make_shared<BodyMesh>(Kernel::extractMesh(shape, colours));
    if (!std::all_of(mesh->positions.begin(), mesh->positions.end(),
                     [](float v) { return std::isfinite(v); }))
        throw Unreadable("holds coordinates that are no numbers");
    const JoinedTriangles joined = joinTriangles(cornersOf(*mesh));
    if (!kinds.normals) {
        mesh->positions.clear();
        mesh->normals.clear();
        addVertices(joined, *mesh);
    }
    mesh->edgePoints.clear();
    mesh->edgeStarts.clear();
    addEdgeLines(joined, *mesh);
    return mesh;
}

} // namespace

void takeMeshes(Reading& reading, Reporter& reporter)
{
    coloursOfMaterials(reading.model->document());
    const Kernel::XdeTree tree = Kernel::readXdeTree(reading.model->document());
    for (size_t i = 0; i < tree.shapes.size(); ++i) {
        reading.meshes.push_back(tree.shapes[i].IsNull() ? nullptr : meshOf(tree.shapes[i], tree.colours[i]));
        reporter.progress(double(i + 1) / double(tree.shapes.size()));
    }
    if (std::none_of(reading.meshes.begin(), reading.meshes.end(),
                     [](const auto& mesh) { return mesh && !mesh->triangles.empty(); }))
        throw Unreadable(reading.ifEmpty);
}

} // namespace Vs::Translate
