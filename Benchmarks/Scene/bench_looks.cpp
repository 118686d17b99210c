// What looks cost: frames of a scene that turns, each beside a plain frame of the same scene, in processor
// time. Usage: bench_looks [SCENE]..., each as for bench_scene; without any, "1000".

#include "Benchmarks/Scene/Parts.h"
#include "Server/Base/Strings.h"
#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Rendra::Graphics::BodyNode;
using Vs::Scene::GraphicsOptionGroup;
using Vs::Scene::ImageOptions;
using Vs::Scene::NodeChange;
using Vs::Scene::ViewFragment;

struct Stage
{
    Vs::StrongRef<ViewFragment> fragment;
    std::vector<Vs::StrongRef<BodyNode>> nodes;
    std::vector<Vs::Colour> colours;
    ImageOptions options;
};

struct Look
{
    const char* name;
    std::function<void(Stage&)> on, off;
};

Stage makeStage(const BenchScene::Scene& scene)
{
    Stage stage{ViewFragment::make(nullptr), {}, {}, {.antiAliasing = false, .fine = false}};
    NodeChange root(stage.fragment->viewFragmentNode());
    for (const BenchScene::Part& part : scene.parts) {
        stage.nodes.push_back(BodyNode::make(scene.meshes[static_cast<size_t>(part.mesh)], part.colour));
        stage.colours.push_back(part.colour);
        NodeChange(stage.nodes.back().get()).transform(part.placement);
        root.add(stage.nodes.back());
    }
    stage.fragment->camera()->fit(stage.fragment->bounds());
    stage.fragment->renderParams()->groundPlaneEnabled(false);
    return stage;
}

/// Milliseconds of all processors for a frame; 0 if nothing can be drawn.
double frameWork(Stage& stage)
{
    const GkVector3d up = stage.fragment->renderParams()->groundPlaneOrientation();
    Vs::Scene::Image image;
    const auto draw = [&] {
        Vs::Status status;
        Vs::Scene::Camera& camera = *stage.fragment->camera();
        GkPoint3d position = camera.position();
        position.rotateBy(6.283185307179586 / BenchScene::kFramesPerTurn, up, camera.target());
        camera.position(position);
        return Vs::Scene::OffscreenRenderer::get()->render({stage.fragment.get()}, BenchScene::kWidth,
                                                           BenchScene::kHeight, stage.options, image, status);
    };
    // The first ones compile and upload.
    if (!draw() || !draw())
        return 0;
    int frames = 0;
    const std::clock_t start = std::clock();
    do {
        draw();
        ++frames;
    } while (frames < 6 || std::clock() - start < CLOCKS_PER_SEC / 3);
    return 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / frames;
}

/// A sky of 1024 by 512 pixels, without compression.
std::string panorama()
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("bench_looks." + std::to_string(getpid()) + ".hdr"))
            .string();
    std::ofstream file(path, std::ios::binary);
    file << "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 512 +X 1024\n";
    for (int y = 0; y < 512; ++y)
        for (int x = 0; x < 1024; ++x) {
            const char pixel[] = {char(60 + y / 6), char(80 + x / 16), char(120 - y / 8), char(128)};
            file.write(pixel, sizeof pixel);
        }
    return path;
}

/// Of every so many-th part.
std::function<void(Stage&)> opacity(float opacity, size_t step)
{
    return [=](Stage& stage) {
        for (size_t i = 0; i < stage.nodes.size(); i += step) {
            Vs::Colour colour = stage.colours[i];
            colour.a = opacity;
            NodeChange(stage.nodes[i].get()).colour(colour);
        }
    };
}

std::vector<Look> allLooks(const std::wstring& sky)
{
    auto& group = *GraphicsOptionGroup::get();
    auto& manager = *Vs::Scene::EnvironmentManager::getEnvManager();
    const auto style = [](int which) {
        return [which](Stage& stage) { stage.fragment->renderParams()->visualStyle(which); };
    };
    const auto usual = style(Vs::Scene::kShadedWithVisibleEdges);
    return {
        {"the same again", [](Stage&) {}, [](Stage&) {}},
        {"half of it glass", opacity(0.4f, 2), opacity(1, 2)},
        {"all of it glass", opacity(0.4f, 1), opacity(1, 1)},
        {"axis cross, scale bar",
         [&group](Stage& stage) {
             stage.options.marks = true;
             group.showAxisCross(true);
             group.showScaleBar(true);
         },
         [&group](Stage& stage) {
             stage.options.marks = false;
             group.showAxisCross(false);
             group.showScaleBar(false);
         }},
        {"no sky behind", [](Stage& stage) { stage.options.dome = false; },
         [](Stage& stage) { stage.options.dome = true; }},
        {"without lines", style(Vs::Scene::kShaded), usual},
        {"hidden lines, too", style(Vs::Scene::kShadedWithHiddenEdges), usual},
        {"realistic", style(Vs::Scene::kRealistic), usual},
        {"realistic, still",
         [](Stage& stage) {
             stage.fragment->renderParams()->visualStyle(Vs::Scene::kRealistic);
             stage.options.effects = true;
         },
         [](Stage& stage) {
             stage.fragment->renderParams()->visualStyle(Vs::Scene::kShadedWithVisibleEdges);
             stage.options.effects = false;
         }},
        {"sky of a .hdr file", [&manager, sky](Stage&) { manager.usualEnvironmentID(sky); },
         [&manager](Stage&) { manager.usualEnvironmentID(L"PhotoBooth"); }},
        {"effects of still pictures", [](Stage& stage) { stage.options.effects = true; },
         [](Stage& stage) { stage.options.effects = false; }},
        {"smooth edges", [](Stage& stage) { stage.options.antiAliasing = true; },
         [](Stage& stage) { stage.options.antiAliasing = false; }},
    };
}

bool measure(const std::string& name)
{
    const BenchScene::Scene scene = BenchScene::sceneOf(name);
    if (scene.parts.empty()) {
        std::fprintf(stderr, "bench_looks: unknown scene \"%s\"\n", name.c_str());
        return false;
    }
    Stage stage = makeStage(scene);
    const std::string file = panorama();
    const std::wstring sky = Vs::Scene::EnvironmentManager::getEnvManager()->read(Vs::Strings::widen(file));
    for (const bool smooth : {false, true}) {
        stage.options.antiAliasing = smooth;
        std::printf("%s: %zu parts, %s edges\n", name.c_str(), scene.parts.size(),
                    smooth ? "smooth" : "plain");
        for (const Look& look : allLooks(sky)) {
            if (smooth && look.name == std::string("smooth edges"))
                continue;
            const double plain = frameWork(stage);
            look.on(stage);
            const double seen = frameWork(stage);
            look.off(stage);
            if (plain == 0 || seen == 0)
                return false;
            std::printf("  %-26s%8.1f ms beside %8.1f ms of processors%8.2f\n", look.name, seen, plain,
                        seen / plain);
        }
    }
    std::filesystem::remove(file);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1)
        return BenchScene::measureAll(argc, argv, measure);
    return measure("1000") ? 0 : 1;
}
