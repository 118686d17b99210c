// Where the time of a program's first picture goes, and what a second one costs: each step in milliseconds,
// and in those of all processors, in processes of their own, since a driver starts only once in each. Usage:
// bench_first_picture [SCENE]..., each as for bench_scene; without any, "box".

#include "Benchmarks/Measure.h"
#include "Benchmarks/Scene/Parts.h"
#include "Server/Base/Strings.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/EglContext.h"
#include "Server/Scene/Rendra/PictureTarget.h"
#include "Server/Scene/Rendra/Renderer.h"
#include "Server/Scene/ViewFragment.h"

#include <cstdio>
#include <ctime>
#include <epoxy/gl.h>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Vs::Scene::Image;
using Vs::Scene::ImageOptions;
using Vs::Scene::ViewFragment;

Vs::StrongRef<ViewFragment> makeScene(const BenchScene::Scene& scene)
{
    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
    Vs::Scene::NodeChange root(fragment->viewFragmentNode());
    for (const BenchScene::Part& part : scene.parts) {
        const auto node =
            Rendra::Graphics::BodyNode::make(scene.meshes[static_cast<size_t>(part.mesh)], part.colour);
        Vs::Scene::NodeChange(node.get()).transform(part.placement);
        root.add(node);
    }
    fragment->camera()->fit(fragment->bounds());
    fragment->renderParams()->groundPlaneEnabled(false);
    return fragment;
}

/// Prints what has passed since the last call.
class Steps
{
public:
    void tell(const char* step)
    {
        const double now = Benchmarks::milliseconds(), work = workOfAll();
        std::printf("  %-28s%9.1f ms%9.1f ms of processors\n", step, now - m_last, work - m_lastWork);
        m_last = Benchmarks::milliseconds();
        m_lastWork = workOfAll();
    }

private:
    static double workOfAll() { return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

    double m_last = Benchmarks::milliseconds(), m_lastWork = workOfAll();
};

/// As the offscreen renderer does it for a canvas, one step after the other.
bool single(ViewFragment& fragment)
{
    Vs::Status status;
    Steps steps;
    const auto context = Rendra::EglContext::make(status);
    steps.tell("driver");
    Rendra::Renderer renderer;
    if (!context || !renderer.initialize(status)) {
        std::fprintf(stderr, "bench_first_picture: %s\n", Vs::Strings::narrow(status.toString()).c_str());
        return false;
    }
    steps.tell("programs for every picture");
    Rendra::PictureTarget target;
    Rendra::RenderTarget picture = Rendra::RenderTarget::current();
    picture.samples = Rendra::PictureTarget::samplesOffered(4);
    if (!target.prepare(BenchScene::kWidth, BenchScene::kHeight, 1, picture.samples))
        return false;
    picture.framebuffer = target.framebuffer();
    picture.width = BenchScene::kWidth;
    picture.height = BenchScene::kHeight;
    picture.effects = true;
    steps.tell("storage");
    std::vector<uint8_t> pixels(static_cast<size_t>(BenchScene::kWidth * BenchScene::kHeight) * 4);
    for (const char* each : {"drawn", "drawn again"}) {
        renderer.render({&fragment}, picture);
        glFinish();
        steps.tell(each);
        target.read(BenchScene::kWidth, BenchScene::kHeight, pixels.data(), BenchScene::kWidth);
        steps.tell("samples averaged and read");
    }
    target.release();
    return true;
}

/// With `expected`, the driver is started as while a file is read.
bool whole(ViewFragment& fragment, bool expected)
{
    Steps steps;
    auto& renderer = *Vs::Scene::OffscreenRenderer::get();
    if (expected) {
        renderer.expect(false);
        renderer.settle();
        steps.tell("expected");
    }
    for (const char* each : {"first picture", "second picture", "third picture"}) {
        Image image;
        Vs::Status status;
        if (!renderer.render({&fragment}, BenchScene::kWidth, BenchScene::kHeight, {}, image, status))
            return false;
        steps.tell(each);
    }
    return true;
}

/// In a process of its own.
template <class F>
bool apart(const F& work)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        const bool done = work();
        std::fflush(stdout);
        _exit(done ? 0 : 1);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool measure(const std::string& name)
{
    const bool isFile = std::filesystem::is_regular_file(name);
    const std::string source = isFile ? BenchScene::modelOf(name) : name;
    const BenchScene::Scene scene = BenchScene::sceneOf(source);
    if (isFile)
        std::filesystem::remove(source); // it stays mapped
    if (scene.parts.empty()) {
        std::fprintf(stderr, "bench_first_picture: unknown scene \"%s\"\n", name.c_str());
        return false;
    }
    const Vs::StrongRef<ViewFragment> fragment = makeScene(scene);
    std::printf("%s, %d x %d pixels\n", name.c_str(), BenchScene::kWidth, BenchScene::kHeight);
    bool drawn = apart([&] { return whole(*fragment, false); });
    drawn = apart([&] { return whole(*fragment, true); }) && drawn;
    std::printf(" step by step, as a canvas shows it\n");
    return apart([&] { return single(*fragment); }) && drawn;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1)
        return BenchScene::measureAll(argc, argv, measure);
    return measure("box") ? 0 : 1;
}
