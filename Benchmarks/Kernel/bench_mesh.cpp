// The program's own meshing of a STEP, IGES or BREP file beside the kernel's default of the same fineness, in
// processor time, and what comes of both, face by face: triangles, and how far the areas of a face differ.

#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <IGESCAFControl_Reader.hxx>
#include <IMeshTools_Parameters.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Poly_Triangulation.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFApp_Application.hxx>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <numbers>
#include <string_view>
#include <vector>

namespace {

using Shapes = std::vector<TopoDS_Shape>;

constexpr int kRounds = 3;

template <typename Reader>
Shapes readDocument(const char* path)
{
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
    Reader reader;
    if (reader.ReadFile(path) != IFSelect_RetDone || !reader.Transfer(document))
        return {};
    return Vs::Kernel::readXdeTree(document).shapes;
}

Shapes readShapes(const std::string_view path)
{
    if (path.ends_with(".igs") || path.ends_with(".iges"))
        return readDocument<IGESCAFControl_Reader>(path.data());
    if (!path.ends_with(".brep"))
        return readDocument<STEPCAFControl_Reader>(path.data());
    TopoDS_Shape shape;
    BRepTools::Read(shape, path.data(), BRep_Builder());
    return {shape};
}

double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

void meshByDefault(const TopoDS_Shape& shape)
{
    Bnd_Box box;
    BRepBndLib::AddClose(shape, box);
    if (box.IsVoid())
        return;
    const Vs::TranslatorRefinement refinement;
    IMeshTools_Parameters parameters;
    parameters.Deflection = std::max(std::sqrt(box.SquareExtent()) * refinement.surfaceDeviation, 1e-4);
    parameters.Angle = refinement.normalDeviation * std::numbers::pi / 180;
    parameters.InParallel = true;
    BRepMesh_IncrementalMesh(shape, parameters);
}

void meshAsQuillet(const TopoDS_Shape& shape)
{
    Vs::Kernel::meshShape(shape, {});
}

struct FaceMesh
{
    int triangles = 0;
    double area = 0;
};

FaceMesh meshOf(const TopoDS_Face& face)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
    FaceMesh result;
    for (int i = 1; !mesh.IsNull() && i <= mesh->NbTriangles(); ++i) {
        int a, b, c;
        mesh->Triangle(i).Get(a, b, c);
        const gp_Vec ab(mesh->Node(a), mesh->Node(b)), ac(mesh->Node(a), mesh->Node(c));
        ++result.triangles;
        result.area += ab.Crossed(ac).Magnitude() / 2;
    }
    return result;
}

struct Run
{
    double seconds = 1e100;
    std::vector<FaceMesh> faces;
};

void run(const Shapes& shapes, void (*mesh)(const TopoDS_Shape&), Run& run)
{
    for (const TopoDS_Shape& shape : shapes)
        BRepTools::Clean(shape);
    const double start = processorSeconds();
    for (const TopoDS_Shape& shape : shapes)
        if (!shape.IsNull())
            mesh(shape);
    run.seconds = std::min(run.seconds, processorSeconds() - start);
    run.faces.clear();
    for (const TopoDS_Shape& shape : shapes)
        for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
            run.faces.push_back(meshOf(TopoDS::Face(face.Current())));
}

int triangles(const Run& run)
{
    int sum = 0;
    for (const FaceMesh& face : run.faces)
        sum += face.triangles;
    return sum;
}

void compare(const char* path)
{
    const Shapes shapes = readShapes(path);
    Run before, after;
    for (int round = 0; round < kRounds; ++round) {
        run(shapes, meshByDefault, before);
        run(shapes, meshAsQuillet, after);
    }
    double difference = 0;
    size_t otherCounts = 0, lost = 0;
    for (size_t i = 0; i < after.faces.size(); ++i) {
        const FaceMesh &a = before.faces[i], &b = after.faces[i];
        otherCounts += a.triangles != b.triangles;
        lost += a.triangles > 0 && b.triangles == 0;
        if (a.area != b.area)
            difference = std::max(difference, std::abs(a.area - b.area) / std::max(a.area, b.area));
    }
    const std::string_view name = std::string_view(path).substr(std::string_view(path).rfind('/') + 1);
    std::printf("%-36.*s %6zu faces: default %8.3f s, Quillet %8.3f s, ratio %5.2f; triangles %7d, %7d; "
                "other counts %zu, lost %zu, areas differ by up to %.1e\n",
                int(name.size()), name.data(), after.faces.size(), before.seconds, after.seconds,
                before.seconds / after.seconds, triangles(before), triangles(after), otherCounts, lost,
                difference);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_mesh FILE...\n");
        return 2;
    }
    Message::DefaultMessenger()->ChangePrinters().Clear();
    for (int i = 1; i < argc; ++i)
        compare(argv[i]);
    std::fflush(stdout);
    std::_Exit(0); // the kernel takes long to take its structures apart
}
