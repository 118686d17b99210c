// The kernel's own viewer on the scene of the benchmark: one presentation for each unique mesh, a connected
// object for each part, faces shaded and edges drawn. Needs an X display. Prints one line of JSON.

#include "Benchmarks/Scene/Parts.h"

#include <AIS_ConnectedInteractive.hxx>
#include <AIS_InteractiveContext.hxx>
#include <AIS_InteractiveObject.hxx>
#include <Aspect_DisplayConnection.hxx>
#include <Graphic3d_ArrayOfPolylines.hxx>
#include <Graphic3d_ArrayOfTriangles.hxx>
#include <Graphic3d_AspectFillArea3d.hxx>
#include <Graphic3d_AspectLine3d.hxx>
#include <Image_PixMap.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <OpenGl_GraphicDriver.hxx>
#include <Prs3d_Presentation.hxx>
#include <V3d_View.hxx>
#include <V3d_Viewer.hxx>
#include <Xw_Window.hxx>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

double seconds()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

/// Shows one mesh in one colour, with its edges.
class MeshObject : public AIS_InteractiveObject
{
public:
    MeshObject(std::shared_ptr<const Vs::BodyMesh> mesh, const Vs::Colour& colour)
        : m_mesh(std::move(mesh)), m_colour(colour.r, colour.g, colour.b, Quantity_TOC_RGB)
    {
    }

private:
    void Compute(const Handle(PrsMgr_PresentationManager) &, const Handle(Prs3d_Presentation) & presentation,
                 const Standard_Integer mode) override
    {
        if (mode == 0)
            shade(presentation);
    }
    void ComputeSelection(const Handle(SelectMgr_Selection) &, const Standard_Integer) override {}

    void shade(const Handle(Prs3d_Presentation) & presentation)
    {
        const Vs::BodyMesh& mesh = *m_mesh;
        const int vertices = static_cast<int>(mesh.positions.size() / 3);
        Handle(Graphic3d_ArrayOfTriangles) faces = new Graphic3d_ArrayOfTriangles(
            vertices, static_cast<int>(mesh.triangles.size()), Graphic3d_ArrayFlags_VertexNormal);
        for (size_t i = 0; i < mesh.positions.size() / 3; ++i) {
            const float* p = &mesh.positions[i * 3];
            const float* n = &mesh.normals[i * 3];
            faces->AddVertex(p[0], p[1], p[2], n[0], n[1], n[2]);
        }
        for (const uint32_t index : mesh.triangles)
            faces->AddEdge(static_cast<int>(index) + 1);
        Graphic3d_MaterialAspect material(Graphic3d_NOM_PLASTIC);
        material.SetColor(m_colour);
        const Handle(Graphic3d_Group) group = presentation->NewGroup();
        group->SetPrimitivesAspect(new Graphic3d_AspectFillArea3d(
            Aspect_IS_SOLID, m_colour, Quantity_NOC_BLACK, Aspect_TOL_SOLID, 1, material, material));
        group->AddPrimitiveArray(faces);

        if (mesh.edgeStarts.size() < 2)
            return;
        const size_t polylines = mesh.edgeStarts.size() - 1;
        Handle(Graphic3d_ArrayOfPolylines) edges = new Graphic3d_ArrayOfPolylines(
            static_cast<int>(mesh.edgePoints.size() / 3), static_cast<int>(polylines));
        for (size_t line = 0; line < polylines; ++line) {
            edges->AddBound(static_cast<int>(mesh.edgeStarts[line + 1] - mesh.edgeStarts[line]));
            for (uint32_t i = mesh.edgeStarts[line]; i < mesh.edgeStarts[line + 1]; ++i)
                edges->AddVertex(mesh.edgePoints[i * 3], mesh.edgePoints[i * 3 + 1],
                                 mesh.edgePoints[i * 3 + 2]);
        }
        const Handle(Graphic3d_Group) lines = presentation->NewGroup();
        lines->SetPrimitivesAspect(new Graphic3d_AspectLine3d(Quantity_NOC_BLACK, Aspect_TOL_SOLID, 1));
        lines->AddPrimitiveArray(edges);
    }

    std::shared_ptr<const Vs::BodyMesh> m_mesh;
    Quantity_Color m_colour;
};

gp_Trsf placement(const GkMatrix3d& m)
{
    gp_Trsf trsf;
    trsf.SetValues(m.entry[0][0], m.entry[0][1], m.entry[0][2], m.entry[0][3], m.entry[1][0], m.entry[1][1],
                   m.entry[1][2], m.entry[1][3], m.entry[2][0], m.entry[2][1], m.entry[2][2], m.entry[2][3]);
    return trsf;
}

/// A PPM file, for whoever wants to see that both sides drew the same.
void savePicture(const Image_PixMap& picture, const char* path)
{
    std::FILE* file = std::fopen(path, "wb");
    if (!file)
        return;
    std::fprintf(file, "P6\n%d %d\n255\n", int(picture.Width()), int(picture.Height()));
    for (int y = 0; y < int(picture.Height()); ++y)
        for (int x = 0; x < int(picture.Width()); ++x) {
            const Quantity_Color colour = picture.PixelColor(x, y).GetRGB();
            for (const double channel : {colour.Red(), colour.Green(), colour.Blue()})
                std::fputc(int(channel * 255 + 0.5), file);
        }
    std::fclose(file);
}

} // namespace

int main(int argc, char** argv)
{
    const BenchScene::Scene scene = BenchScene::sceneOf(argc > 1 ? argv[1] : "10000");
    const double limit = argc > 2 ? std::atof(argv[2]) : 5;
    Message::DefaultMessenger()->ChangePrinters().Clear();
    try {
        Handle(Aspect_DisplayConnection) display = new Aspect_DisplayConnection();
        Handle(OpenGl_GraphicDriver) driver = new OpenGl_GraphicDriver(display);
        // What a viewer waits for is the picture, not the screen's refresh.
        driver->ChangeOptions().swapInterval = 0;
        Handle(V3d_Viewer) viewer = new V3d_Viewer(driver);
        viewer->SetDefaultLights();
        viewer->SetLightOn();
        Handle(AIS_InteractiveContext) context = new AIS_InteractiveContext(viewer);
        Handle(V3d_View) view = viewer->CreateView();
        Handle(Xw_Window) window =
            new Xw_Window(display, "kernel", 0, 0, BenchScene::kWidth, BenchScene::kHeight);
        view->SetWindow(window);
        window->Map();
        view->SetImmediateUpdate(Standard_False);

        // A connected object shares its original's presentation, colour and all: one original for each mesh
        // and colour.
        const auto& meshes = scene.meshes;
        std::vector<std::pair<std::pair<int, Vs::Colour>, Handle(MeshObject)>> originals;
        for (const BenchScene::Part& part : scene.parts) {
            const std::pair key(part.mesh, part.colour);
            auto found = std::find_if(originals.begin(), originals.end(),
                                      [&](const auto& entry) { return entry.first == key; });
            if (found == originals.end()) {
                originals.emplace_back(key,
                                       new MeshObject(meshes[static_cast<size_t>(part.mesh)], part.colour));
                found = originals.end() - 1;
            }
            Handle(AIS_ConnectedInteractive) object = new AIS_ConnectedInteractive();
            object->Connect(found->second, placement(part.placement));
            context->Display(object, 0, -1, Standard_False);
        }
        view->SetProj(V3d_XposYnegZpos);
        view->MustBeResized();
        view->FitAll(0.02, Standard_False);
        view->ZFitAll();
        const Handle(Graphic3d_Camera) camera = view->Camera();
        gp_Trsf step;
        step.SetRotation(gp_Ax1(camera->Center(), gp::DZ()), 6.283185307179586 / BenchScene::kFramesPerTurn);
        Image_PixMap picture;
        view->ToPixMap(picture, BenchScene::kWidth, BenchScene::kHeight);

        // Into memory, as the other side draws: what the X server does with a picture isn't measured.
        int frames = 0;
        const std::clock_t cpu = std::clock();
        const double start = seconds();
        do {
            camera->Transform(step);
            view->ToPixMap(picture, BenchScene::kWidth, BenchScene::kHeight);
            ++frames;
        } while (frames < 3 || seconds() - start < limit);
        const double spent = seconds() - start;
        const double work = 1e3 * double(std::clock() - cpu) / CLOCKS_PER_SEC / frames;
        if (argc > 3)
            savePicture(picture, argv[3]);
        std::printf("{\"parts\": %d, \"frames\": %d, \"fps\": %.3f, \"work\": %.3f}\n",
                    int(scene.parts.size()), frames, frames / spent, work);
    } catch (const Standard_Failure& failure) {
        std::fprintf(stderr, "kernel_viewer: %s\n", failure.GetMessageString());
        return 1;
    }
    std::fflush(stdout);
    std::_Exit(0);
}
