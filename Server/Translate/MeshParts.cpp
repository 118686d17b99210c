#include "Server/Translate/MeshParts.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/MaterialParts.h"
#include "Server/Translate/Parallel.h"
#include "Server/Translate/TriangleMesh.h"

#include <BRep_Tool.hxx>
#include <Geom_Surface.hxx>
#include <Poly_Triangulation.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_VisMaterial.hxx>
#include <XCAFDoc_VisMaterialTool.hxx>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <optional>
#include <sstream>
#include <thread>

namespace Vs::Translate {

namespace {

void settleMaterials(const Handle(TDocStd_Document) & document, const SettleMaterial& settle)
{
    const Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(document->Main());
    const Handle(XCAFDoc_VisMaterialTool) materials = XCAFDoc_DocumentTool::VisMaterialTool(document->Main());
    TDF_LabelSequence all;
    materials->GetMaterials(all);
    if (all.IsEmpty())
        return;
    for (const TDF_Label& label : all)
        if (const Handle(XCAFDoc_VisMaterial) material = materials->GetMaterial(label); !material.IsNull())
            settle(*material);
    separateMaterials(document);
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
    size_t numbers = 0;   ///< Of all nodes, normals and triangles.
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
        kinds.numbers += 6 * size_t(triangulation->NbNodes()) + 3 * size_t(triangulation->NbTriangles());
        all = all && triangulation->HasNormals();
    }
    kinds.normals = any && all;
    return kinds;
}

std::shared_ptr<const BodyMesh> meshOf(const TopoDS_Shape& shape, const Kernel::ShapeColours& colours,
                                       const Kinds& kinds)
{
    if (kinds.exact) {
        Kernel::meshShape(shape, {});
        return std::make_shared<const BodyMesh>(Kernel::extractMesh(shape, colours));
    }
    auto mesh = std::make_shared<BodyMesh>(Kernel::extractMesh(shape, colours));
    if (!std::all_of(mesh->positions.begin(), mesh->positions.end(),
                     [](float v) { return std::isfinite(v); }))
        throw Unreadable("holds coordinates that aren't numbers");
    const JoinedTriangles joined = joinTriangles(mesh->positions, mesh->triangles);
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

// Writes a model while its triangles are turned into meshes and themselves stay as they are.
class Storing
{
public:
    /// `bytes` is the approximate size of the result.
    Storing(Kernel::XdeModel& model, size_t bytes) : m_stream(roomFor(bytes))
    {
        m_thread = std::thread([this, &model] {
            try {
                model.write(m_stream);
            } catch (...) {
                m_fault = std::current_exception();
            }
        });
    }
    ~Storing()
    {
        if (m_thread.joinable())
            m_thread.join();
    }
    Storing(const Storing&) = delete;
    Storing& operator=(const Storing&) = delete;

    std::string take()
    {
        m_thread.join();
        if (m_fault)
            std::rethrow_exception(m_fault);
        return std::move(m_stream).str();
    }

private:
    static std::string roomFor(size_t bytes)
    {
        std::string room;
        room.reserve(bytes);
        return room;
    }

    std::ostringstream m_stream;
    std::exception_ptr m_fault;
    std::thread m_thread;
};

} // namespace

void takeMeshes(Reading& reading, Reporter& reporter)
{
    takeMeshes(reading, reporter, [](XCAFDoc_VisMaterial&) {});
}

void takeMeshes(Reading& reading, Reporter& reporter, const SettleMaterial& settle)
{
    settleMaterials(reading.model->document(), settle);
    const Kernel::XdeTree tree = Kernel::readXdeTree(reading.model->document());
    std::vector<Kinds> kinds(tree.shapes.size());
    for (size_t i = 0; i < kinds.size(); ++i)
        kinds[i] = tree.shapes[i].IsNull() ? Kinds() : kindsOf(tree.shapes[i]);
    const bool exact = std::any_of(kinds.begin(), kinds.end(), [](const Kinds& each) { return each.exact; });
    size_t numbers = 0;
    for (const Kinds& each : kinds)
        numbers += each.numbers;
    std::optional<Storing> storing;
    if (!exact)
        storing.emplace(*reading.model, numbers * sizeof(double));
    reading.meshes.resize(tree.shapes.size());
    std::atomic<size_t> done = 0;
    forEachInParallel(tree.shapes.size(), [&](size_t i) {
        if (!tree.shapes[i].IsNull())
            reading.meshes[i] = meshOf(tree.shapes[i], tree.colours[i], kinds[i]);
        reporter.progress(double(++done) / double(tree.shapes.size()));
    });
    if (std::none_of(reading.meshes.begin(), reading.meshes.end(),
                     [](const auto& mesh) { return mesh && !mesh->triangles.empty(); }))
        throw Unreadable(reading.ifEmpty);
    if (storing)
        reading.stored = storing->take();
}

} // namespace Vs::Translate
