// The floor: what a program takes that does nothing but call the kernel, to read a STEP, glTF or OBJ file
// with names and colours, mesh it and write one binary STL file. Prints one line of JSON with its own times,
// its peak memory and the number of triangles, so that a comparison can see that both sides did the same
// work.

#include "Benchmarks/Kernel/ReadInput.h"
#include "Benchmarks/Measure.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BinXCAFDrivers.hxx>
#include <Bnd_Box.hxx>
#include <IMeshTools_Parameters.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <StlAPI_Writer.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <cstdio>
#include <cstring>
#include <string>

using Benchmarks::milliseconds, Benchmarks::peakKiB;

namespace {

// The same rule as Quillet's own meshing: a fraction of the part's diagonal, and 20 degrees.
void mesh(const TopoDS_Shape& shape, bool parallel)
{
    Bnd_Box box;
    BRepBndLib::AddClose(shape, box);
    if (box.IsVoid())
        return;
    IMeshTools_Parameters parameters;
    parameters.Deflection = std::max(std::sqrt(box.SquareExtent()) * 0.001, 1e-4);
    parameters.Angle = 20.0 * 3.14159265358979323846 / 180.0;
    parameters.InParallel = parallel;
    BRepMesh_IncrementalMesh(shape, parameters);
}

// A document with its shapes and meshes from the kernel's own binary file.
int reopen(const char* path)
{
    Message::DefaultMessenger()->ChangePrinters().Clear();
    const double start = milliseconds();
    Handle(XCAFApp_Application) application = XCAFApp_Application::GetApplication();
    BinXCAFDrivers::DefineFormat(application);
    Handle(TDocStd_Document) document;
    if (application->Open(path, document) != PCDM_RS_OK) {
        std::fprintf(stderr, "kernel_floor: cannot read %s\n", path);
        return 1;
    }
    std::printf("{\"reopen_ms\": %.1f, \"peak_kib\": %ld}\n", milliseconds() - start, peakKiB());
    std::fflush(stdout);
    std::_Exit(0);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--reopen") == 0)
        return reopen(argv[2]);
    const char* store = nullptr;
    if (argc > 3 && std::strcmp(argv[1], "--store") == 0) {
        store = argv[2];
        argv += 2;
        argc -= 2;
    }
    bool parallel = false;
    int at = 1;
    if (at < argc && std::strcmp(argv[at], "--parallel") == 0) {
        parallel = true;
        ++at;
    }
    if (argc - at != 2) {
        std::fprintf(stderr, "usage: kernel_floor [--store OUT.xbf] [--parallel] IN OUT.stl\n"
                             "       kernel_floor --reopen IN.xbf\n");
        return 2;
    }
    Message::DefaultMessenger()->ChangePrinters().Clear();

    const double start = milliseconds();
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
    if (!readInput(argv[at], document, parallel)) {
        std::fprintf(stderr, "kernel_floor: cannot read %s\n", argv[at]);
        return 1;
    }
    const double read = milliseconds();

    Handle(XCAFDoc_ShapeTool) tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    TDF_LabelSequence shapes;
    tool->GetShapes(shapes);
    std::vector<TopoDS_Shape> unique;
    for (const TDF_Label& label : shapes)
        if (XCAFDoc_ShapeTool::IsSimpleShape(label) && !XCAFDoc_ShapeTool::IsReference(label))
            unique.push_back(XCAFDoc_ShapeTool::GetShape(label));
    // Faces within a part are what the kernel meshes in parallel by itself.
    for (const TopoDS_Shape& shape : unique)
        if (!BRepTools::Triangulation(shape, 1e100)) // what came as triangles stays so
            mesh(shape, parallel);
    const double meshed = milliseconds();

    double storing = 0;
    if (store) {
        BinXCAFDrivers::DefineFormat(XCAFApp_Application::GetApplication());
        if (XCAFApp_Application::GetApplication()->SaveAs(document, store) != PCDM_SS_OK) {
            std::fprintf(stderr, "kernel_floor: cannot write %s\n", store);
            return 1;
        }
        storing = milliseconds() - meshed;
    }

    TDF_LabelSequence free;
    tool->GetFreeShapes(free);
    BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    for (const TDF_Label& label : free)
        builder.Add(all, XCAFDoc_ShapeTool::GetShape(label));
    StlAPI_Writer writer;
    writer.ASCIIMode() = false;
    if (!writer.Write(all, argv[at + 1])) {
        std::fprintf(stderr, "kernel_floor: cannot write %s\n", argv[at + 1]);
        return 1;
    }
    const double written = milliseconds();

    long triangles = 0;
    for (TopExp_Explorer faces(all, TopAbs_FACE); faces.More(); faces.Next()) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation) face =
            BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location);
        triangles += face.IsNull() ? 0 : face->NbTriangles();
    }
    std::printf(
        "{\"read_ms\": %.1f, \"mesh_ms\": %.1f, \"store_ms\": %.1f, \"write_ms\": %.1f, \"peak_kib\": %ld, "
        "\"triangles\": %ld}\n",
        read - start, meshed - read, storing, written - meshed - storing, peakKiB(), triangles);
    // The kernel takes long to take its structures apart; a floor doesn't wait for that.
    std::fflush(stdout);
    std::_Exit(0);
}
