#include "Server/Translate/StlReader.h"

#include "Server/Translate/MappedFile.h"
#include "Server/Translate/StlMesh.h"

#include <BRep_Builder.hxx>
#include <TDataStd_Name.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Translate {

Reading readStl(const std::string& path, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    reporter.stage("reading the file", 0.0, 0.5);
    const MappedFile file(path);
    const std::vector<StlSolid> solids = parseStl(file.bytes(), reporter, reading.warnings);
    reporter.stage("joining the triangles", 0.5, 0.8);
    const Handle(XCAFDoc_ShapeTool) tool = XCAFDoc_DocumentTool::ShapeTool(reading.model->document()->Main());
    for (const StlSolid& solid : solids) {
        if (solid.corners.empty())
            continue;
        auto mesh = std::make_shared<BodyMesh>();
        const Handle(Poly_Triangulation) triangulation = triangulate(solid, *mesh);
        TopoDS_Face face;
        BRep_Builder().MakeFace(face, triangulation);
        const TDF_Label label = tool->AddShape(face, false, false);
        const std::string& name = solid.name.empty() ? stemOf(path) : solid.name;
        TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), true));
        reading.meshes.push_back(std::move(mesh));
        reporter.progress(double(reading.meshes.size()) / double(solids.size()));
    }
    if (reading.meshes.empty())
        throw Unreadable("holds no triangles");
    return reading;
}

} // namespace Vs::Translate
