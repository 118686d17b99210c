// Frames a second of a scene of many parts that turns once, drawn here and by the kernel's own viewer, in the
// same run on the same machine. Usage: bench_scene [PARTS [PICTURE.ppm]].

#include "Benchmarks/Scene/Parts.h"
#include "Server/Base/Strings.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using Rendra::Graphics::BodyNode;
using Vs::Scene::Image;
using Vs::Scene::NodeChange;
using Vs::Scene::ViewFragment;

double seconds()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

Vs::StrongRef<ViewFragment> makeScene(int count)
{
    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    const auto meshes = BenchScene::meshes();
    NodeChange root(fragment->viewFragmentNode());
    for (const BenchScene::Part& part : BenchScene::parts(count)) {
        const Vs::StrongRef<BodyNode> node = BodyNode::make(meshes[part.mesh], part.colour);
        NodeChange(node.get()).transform(part.placement);
        root.add(node);
    }
    Vs::Scene::Camera* camera = fragment->camera();
    camera->projection(Vs::Scene::kParallelProjection);
    camera->fit(fragment->bounds());
    return fragment;
}

void savePicture(const Image& image, const char* path)
{
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << image.width << ' ' << image.height << "\n255\n";
    for (size_t i = 0; i < image.pixels.size(); i += 4)
        file.write(reinterpret_cast<const char*>(&image.pixels[i]), 3);
}

/// Turns the scene for some seconds. Returns frames a second, or 0 if there is no way to draw.
double framesPerSecond(ViewFragment& fragment, bool antiAliasing, double limit, const char* picturePath)
{
    const Vs::Scene::ImageOptions options{.antiAliasing = antiAliasing, .fine = false};
    const GkVector3d up = fragment.renderParams()->groundPlaneOrientation();
    Image image;
    Vs::Status status;
    const auto draw = [&] {
        return Vs::Scene::OffscreenRenderer::get()->render({&fragment}, BenchScene::kWidth,
                                                           BenchScene::kHeight, options, image, status);
    };
    // The first picture makes the context and hands the meshes over; a person waits for it once.
    if (!draw()) {
        std::fprintf(stderr, "bench_scene: %s\n", Vs::Strings::narrow(status.toString()).c_str());
        return 0;
    }
    int frames = 0;
    const double start = seconds();
    do {
        Vs::Scene::Camera& camera = *fragment.camera();
        GkPoint3d position = camera.position();
        position.rotateBy(6.283185307179586 / BenchScene::kFramesPerTurn, up, camera.target());
        camera.position(position);
        if (!draw())
            return 0;
        ++frames;
    } while (frames < 3 || seconds() - start < limit);
    const double spent = seconds() - start;
    if (picturePath)
        savePicture(image, picturePath);
    return frames / spent;
}

/// Runs the kernel's viewer, under a display of its own if there is none. Returns 0 if that cannot be had.
double kernelFramesPerSecond(int count, double limit)
{
    const std::string program =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kernel_viewer").string();
    const std::string command = (std::getenv("DISPLAY") ? "'" : "xvfb-run -a '") + program + "' " +
                                std::to_string(count) + ' ' + std::to_string(limit);
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return 0;
    double result = 0;
    int parts = 0, frames = 0;
    if (std::fscanf(pipe, "{\"parts\": %d, \"frames\": %d, \"fps\": %lf}", &parts, &frames, &result) != 3)
        result = 0;
    pclose(pipe);
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 10000;
    const char* const picturePath = argc > 2 ? argv[2] : nullptr;
    if (count <= 0) {
        std::fprintf(stderr, "usage: bench_scene [PARTS [PICTURE.ppm]]\n");
        return 2;
    }
    constexpr double kLimit = 5;

    double start = seconds();
    const Vs::StrongRef<ViewFragment> fragment = makeScene(count);
    std::printf("%d parts, %d x %d pixels; scene made in %.1f ms\n", count, BenchScene::kWidth,
                BenchScene::kHeight, (seconds() - start) * 1000);
    start = seconds();
    const double plain = framesPerSecond(*fragment, false, kLimit, nullptr);
    if (plain == 0)
        return 1;
    std::printf("quillet            %8.2f frames/s\n", plain);
    std::printf("quillet, smooth    %8.2f frames/s\n", framesPerSecond(*fragment, true, kLimit, picturePath));
    const double kernel = kernelFramesPerSecond(count, kLimit);
    if (kernel == 0) {
        std::printf("NOTICE: the kernel's viewer could not be run (it needs a display, or xvfb-run)\n");
        return 0;
    }
    std::printf("the kernel's own   %8.2f frames/s\nratio              %8.1f\n", kernel, plain / kernel);
    return 0;
}
