// Frames a second of scenes that turn, drawn here and by the kernel's own viewer, in the same run on the same
// machine, and the processor time of each, which other programs on the machine change least. Usage:
// bench_scene [SCENE]..., each a number of parts, "million" for one body of a million triangles, or a STEP
// file; without any, "10000 million".

#include "Benchmarks/Scene/Parts.h"
#include "Server/Base/Strings.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Picker.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/Rendra/EglContext.h"
#include "Server/Scene/Rendra/PictureTarget.h"
#include "Server/Scene/Rendra/Renderer.h"
#include "Server/Scene/ViewFragment.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Rendra::Graphics::BodyNode;
using Vs::Scene::Image;
using Vs::Scene::ImageOptions;
using Vs::Scene::NodeChange;
using Vs::Scene::ViewFragment;

double seconds()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

Vs::StrongRef<ViewFragment> makeScene(const BenchScene::Scene& scene)
{
    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    NodeChange root(fragment->viewFragmentNode());
    for (const BenchScene::Part& part : scene.parts) {
        const Vs::StrongRef<BodyNode> node = BodyNode::make(scene.meshes[size_t(part.mesh)], part.colour);
        NodeChange(node.get()).transform(part.placement);
        root.add(node);
    }
    Vs::Scene::Camera* camera = fragment->camera();
    camera->projection(Vs::Scene::kParallelProjection);
    camera->fit(fragment->bounds());
    fragment->renderParams()->groundPlaneEnabled(false);
    return fragment;
}

struct Speed
{
    double frames = 0; ///< A second; 0 if there is no way to draw.
    double work = 0;   ///< Milliseconds of all processors for a frame.
};

/// Turns the scene for some seconds.
Speed turn(ViewFragment& fragment, bool moving, double limit, double& first)
{
    const ImageOptions options{.antiAliasing = false, .fine = false, .moving = moving};
    const GkVector3d up = fragment.renderParams()->groundPlaneOrientation();
    Image image;
    Vs::Status status;
    const auto draw = [&] {
        return Vs::Scene::OffscreenRenderer::get()->render({&fragment}, BenchScene::kWidth,
                                                           BenchScene::kHeight, options, image, status);
    };
    // The first picture makes the context and hands the meshes over; a person waits for it once.
    double start = seconds();
    if (!draw()) {
        std::fprintf(stderr, "bench_scene: %s\n", Vs::Strings::narrow(status.toString()).c_str());
        return {};
    }
    first = seconds() - start;
    int frames = 0;
    start = seconds();
    const std::clock_t cpu = std::clock();
    do {
        Vs::Scene::Camera& camera = *fragment.camera();
        GkPoint3d position = camera.position();
        position.rotateBy(6.283185307179586 / BenchScene::kFramesPerTurn, up, camera.target());
        camera.position(position);
        if (!draw())
            return {};
        ++frames;
    } while (frames < 3 || seconds() - start < limit);
    return {frames / (seconds() - start), 1e3 * double(std::clock() - cpu) / CLOCKS_PER_SEC / frames};
}

/// What the graphics unit keeps for the meshes of a scene, in bytes; 0 if there is none.
uint64_t meshBytes(ViewFragment& fragment)
{
    Vs::Status status;
    const auto context = Rendra::EglContext::make(status);
    Rendra::Renderer renderer;
    Rendra::PictureTarget target;
    if (!context || !renderer.initialize(status) ||
        !target.prepare(BenchScene::kWidth, BenchScene::kHeight, 1, 1))
        return 0;
    renderer.render(&fragment, BenchScene::kWidth, BenchScene::kHeight, target.framebuffer());
    const uint64_t bytes = renderer.meshBytes();
    target.release();
    return bytes;
}

/// Microseconds to find what lies under a pixel, the median of many.
double pickTime(const ViewFragment& fragment)
{
    const Vs::Scene::Projection view(*fragment.camera(), BenchScene::kWidth, BenchScene::kHeight,
                                     fragment.bounds());
    std::vector<double> times;
    size_t hits = 0;
    for (int i = 0; i < 400; ++i) {
        const double x = BenchScene::kWidth * (0.3 + 0.4 * (i % 20) / 20);
        const double y = BenchScene::kHeight * (0.3 + 0.4 * (i / 20) / 20);
        const double start = seconds();
        hits += Vs::Scene::pick(*fragment.viewFragmentNode(), view.rayStart(x, y), view.rayDirection(x, y))
                    .has_value();
        times.push_back((seconds() - start) * 1e6);
    }
    std::nth_element(times.begin(), times.begin() + 200, times.end());
    return hits > 0 ? times[200] : 0;
}

/// Runs the kernel's viewer, under a display of its own if there is none.
Speed kernelSpeed(const std::string& scene, double limit)
{
    const std::string program =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kernel_viewer").string();
    const std::string command = (std::getenv("DISPLAY") ? "'" : "xvfb-run -a '") + program + "' '" + scene +
                                "' " + std::to_string(limit);
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return {};
    Speed result;
    int parts = 0, frames = 0;
    if (std::fscanf(pipe, "{\"parts\": %d, \"frames\": %d, \"fps\": %lf, \"work\": %lf}", &parts, &frames,
                    &result.frames, &result.work) != 4)
        result = {};
    pclose(pipe);
    return result;
}

bool measure(const std::string& name)
{
    constexpr double kLimit = 3;
    const bool isFile = std::filesystem::is_regular_file(name);
    const std::string source = isFile ? BenchScene::modelOf(name) : name;
    const BenchScene::Scene scene = BenchScene::sceneOf(source);
    if (scene.parts.empty()) {
        std::fprintf(stderr, "bench_scene: \"%s\" is no number of parts, nor \"million\", nor a STEP file\n",
                     name.c_str());
        return false;
    }
    size_t triangles = 0;
    for (const BenchScene::Part& part : scene.parts)
        triangles += scene.meshes[size_t(part.mesh)]->triangles.size() / 3;
    const Vs::StrongRef<ViewFragment> fragment = makeScene(scene);
    std::printf("%s: %zu parts, %zu triangles, %d x %d pixels\n", name.c_str(), scene.parts.size(), triangles,
                BenchScene::kWidth, BenchScene::kHeight);
    double first = 0, unused = 0;
    const Speed whole = turn(*fragment, false, kLimit, first);
    if (whole.frames == 0)
        return false;
    const Speed moving = turn(*fragment, true, kLimit, unused);
    std::printf("first picture      %8.1f ms\n", first * 1000);
    std::printf("quillet, orbiting  %8.2f frames/s %8.1f ms of processors\n", moving.frames, moving.work);
    std::printf("quillet, whole     %8.2f frames/s %8.1f ms\n", whole.frames, whole.work);
    size_t unique = 0;
    for (const auto& mesh : scene.meshes)
        unique += mesh ? mesh->triangles.size() / 3 : 0;
    std::printf("memory of meshes   %8.1f bytes for each of %zu triangles that are sent\n",
                double(meshBytes(*fragment)) / double(std::max<size_t>(unique, 1)), unique);
    std::printf("hover              %8.1f us\n", pickTime(*fragment));
    const Speed kernel = kernelSpeed(source, kLimit);
    if (isFile)
        std::filesystem::remove(source);
    if (kernel.frames == 0) {
        std::printf("NOTICE: the kernel's viewer could not be run (it needs a display, or xvfb-run)\n");
        return true;
    }
    std::printf("the kernel's own   %8.2f frames/s %8.1f ms\n", kernel.frames, kernel.work);
    std::printf("ratios             %8.1f orbiting, %.1f whole; by processors %.1f, %.1f\n",
                moving.frames / kernel.frames, whole.frames / kernel.frames, kernel.work / moving.work,
                kernel.work / whole.work);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    return BenchScene::measureAll(argc, argv, measure);
}
