// Draws some simple bodies and writes the pictures as PNG files into the folder given as argument: for
// inspection when light, edges or backgrounds change.

#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <QImage>

#include <chrono>
#include <cstdio>
#include <string>

using namespace Vs;
using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;

namespace {

void show(ViewFragment& fragment, const Shapes::MeshPtr& mesh, const GkVector3d& at, const Colour& colour,
          Rendra::Graphics::Highlight highlight = Rendra::Graphics::Highlight::None)
{
    const StrongRef<BodyNode> node = BodyNode::make(mesh, colour);
    NodeChange(node.get()).transform(GkMatrix3d::translation(at)).highlight(highlight);
    NodeChange(fragment.viewFragmentNode()).add(node);
}

void write(ViewFragment& fragment, const std::string& file, uint32_t width, uint32_t height,
           const ImageOptions& options)
{
    const auto start = std::chrono::steady_clock::now();
    Image image;
    Status status;
    if (!OffscreenRenderer::get()->render({&fragment}, width, height, options, image, status)) {
        std::fprintf(stderr, "%ls\n", status.toString().c_str());
        return;
    }
    const double took =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    const QImage picture(image.pixels.data(), int(width), int(height), QImage::Format_RGBA8888);
    picture.save(QString::fromStdString(file));
    std::printf("%s %.0f ms\n", file.c_str(), took);
}

} // namespace

int main(int count, char** arguments)
{
    GraphicsOptionGroup::get()->reset();
    const std::string folder = count > 1 ? arguments[1] : ".";
    const StrongRef<ViewFragment> fragment = ViewFragment::make(Segment::makeTransientStandalone("Pictures"));
    const Colour grey, red{0.60f, 0.06f, 0.05f, 1}, blue{0.07f, 0.20f, 0.55f, 1},
        green{0.15f, 0.42f, 0.12f, 1}, brass{0.65f, 0.42f, 0.10f, 1}, glass{0.35f, 0.60f, 0.85f, 0.35f},
        dark{0.03f, 0.03f, 0.035f, 1}, steel{0.45f, 0.46f, 0.48f, 1}, white{0.9f, 0.9f, 0.9f, 1};
    show(*fragment, Shapes::box(260, 200, 12), {-60, -60, -12}, grey);
    show(*fragment, Shapes::box(40, 40, 60, &red), {-30, -30, 0}, grey);
    show(*fragment, Shapes::cylinder(22, 70), {60, 0, 0}, blue);
    show(*fragment, Shapes::ball(28), {120, 20, 28}, green);
    show(*fragment, Shapes::torus(30, 10), {0, 80, 10}, brass);
    show(*fragment, Shapes::box(50, 10, 50), {60, 60, 0}, glass);
    show(*fragment, Shapes::cylinder(12, 40), {90, 85, 0}, dark);
    show(*fragment, Shapes::box(30, 30, 30), {140, 70, 0}, white);
    show(*fragment, Shapes::ball(20, 64), {-20, 60, 20}, steel);
    show(*fragment, Shapes::cylinder(12, 30), {100, -30, 0}, steel);
    show(*fragment, Shapes::ball(14), {30, -35, 14}, grey, Rendra::Graphics::Highlight::Selected);
    show(*fragment, Shapes::box(25, 25, 25), {150, -45, 0}, grey, Rendra::Graphics::Highlight::Pointed);
    fragment->camera()->fit(fragment->bounds());

    ImageOptions options;
    write(*fragment, folder + "/shaded.png", 1280, 720, options);
    options.dome = false;
    write(*fragment, folder + "/plain.png", 1280, 720, options);
    options.transparentBackground = true;
    write(*fragment, folder + "/transparent.png", 640, 640, options);
    options = {};
    options.fine = false;
    write(*fragment, folder + "/canvas.png", 1280, 720, options);
    options.antiAliasing = false;
    write(*fragment, folder + "/rough.png", 1280, 720, options);
    options = {};
    for (int style = 0; style <= 6; ++style) {
        fragment->renderParams()->visualStyle(style);
        write(*fragment, folder + "/style" + std::to_string(style) + ".png", 640, 400, options);
    }
    for (const int style : {kShadedWithVisibleEdges, kRealistic, kWireframe}) {
        fragment->renderParams()->visualStyle(style);
        for (const Environment& environment : EnvironmentManager::getEnvManager()->environments()) {
            EnvironmentManager::getEnvManager()->activeEnvironmentID(environment.id);
            const std::string id(environment.id.begin(), environment.id.end());
            write(*fragment, folder + "/" + id + std::to_string(style) + ".png", 640, 400, options);
        }
    }
    fragment->renderParams()->visualStyle(kShadedWithVisibleEdges);
    for (const wchar_t* id : {L"PhotoBooth", L"DarkSky"}) {
        EnvironmentManager::getEnvManager()->activeEnvironmentID(id);
        for (int effect = 1; effect <= 4; ++effect) {
            GraphicsOptionGroup::get()->selectionEffectOption(effect);
            write(*fragment, folder + "/effect" + std::to_string(effect) + (*id == L'D' ? "d" : "") + ".png",
                  640, 400, options);
        }
    }
    GraphicsOptionGroup::get()->selectionEffectOption(1);
    fragment->renderParams()->colorCyclingEnabled(true);
    write(*fragment, folder + "/cycling.png", 640, 400, options);
    fragment->renderParams()->colorCyclingEnabled(false);
    // As seen by somebody who stands beside the model.
    fragment->camera()->look({-1, 1, -0.12}, {0, 0, 1});
    for (const Environment& environment : EnvironmentManager::getEnvManager()->environments()) {
        EnvironmentManager::getEnvManager()->activeEnvironmentID(environment.id);
        const std::string id(environment.id.begin(), environment.id.end());
        write(*fragment, folder + "/" + id + "-horizon.png", 640, 400, options);
    }
    EnvironmentManager::getEnvManager()->activeEnvironmentID(L"PhotoBooth");
    fragment->camera()->look({-1, 1, -1}, {0, 0, 1});
    fragment->renderParams()->visualStyle(kShadedWithVisibleEdges);
    fragment->camera()->toggleProjection(kParallelProjection);
    fragment->camera()->fit(fragment->bounds());
    write(*fragment, folder + "/parallel.png", 640, 400, options);
    write(*fragment, folder + "/large.png", 5000, 3000, options);
    GraphicsOptionGroup::get()->showAxisCross(true);
    GraphicsOptionGroup::get()->showScaleBar(true);
    options.marks = true;
    for (const wchar_t* id : {L"PhotoBooth", L"DarkSky"})
        for (const float ratio : {1.0f, 2.0f}) {
            EnvironmentManager::getEnvManager()->activeEnvironmentID(id);
            options.pixelRatio = ratio;
            write(*fragment,
                  folder + "/marks" + std::to_string(int(ratio)) + (*id == L'D' ? "d" : "") + ".png",
                  uint32_t(640 * ratio), uint32_t(400 * ratio), options);
        }
    return 0;
}
