// What a move of the mouse costs: finding the edge or face under the pointer, here and by the kernel's own
// selector, on the same scene, at the same places, alternately in one run. Usage: bench_pick [SCENE]..., each
// a number of parts, "million" for one body of a million triangles, or a model file; without any, "10000
// million".

#include "Benchmarks/Measure.h"
#include "Benchmarks/Scene/KernelPicks.h"
#include "Server/Scene/AreaPicker.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Picker.h"
#include "Server/Scene/Private/MeshTree.h"
#include "Server/Scene/ViewFragment.h"

#include <algorithm>
#include <cstdio>
#include <thread>

namespace {

using Benchmarks::milliseconds;
using Vs::Scene::PickWish;

/// The median and the worst, in milliseconds.
struct Times
{
    std::vector<double> all;
    size_t found = 0;

    template <class Work>
    void take(Work&& work)
    {
        const double start = milliseconds();
        found += work();
        all.push_back(milliseconds() - start);
    }
    double at(double part)
    {
        std::sort(all.begin(), all.end());
        return all[std::min(all.size() - 1, size_t(double(all.size()) * part))];
    }
};

Vs::StrongRef<Vs::Scene::ViewFragment> show(const BenchScene::Scene& scene)
{
    auto fragment = Vs::Scene::ViewFragment::make(nullptr);
    Vs::Scene::NodeChange root(fragment->viewFragmentNode());
    for (const BenchScene::Part& part : scene.parts) {
        const auto node = Rendra::Graphics::BodyNode::make(scene.meshes[size_t(part.mesh)], part.colour);
        Vs::Scene::NodeChange(node.get()).transform(part.placement);
        root.add(node);
    }
    fragment->camera()->projection(Vs::Scene::kParallelProjection);
    fragment->camera()->fit(fragment->bounds());
    return fragment;
}

/// Trees of large meshes are made beside; what is measured is pointing, once they are there.
void awaitTrees(const BenchScene::Scene& scene)
{
    for (const auto& mesh : scene.meshes)
        while (mesh && !Vs::Scene::MeshTree::isSmall(*mesh) && !Vs::Scene::MeshTree::of(mesh))
            std::this_thread::yield();
}

bool measure(const std::string& name)
{
    const BenchScene::Scene scene = BenchScene::sceneOf(name);
    if (scene.parts.empty()) {
        std::fprintf(stderr, "bench_pick: \"%s\" is no number of parts, nor \"million\", nor a model file\n",
                     name.c_str());
        return false;
    }
    const auto fragment = show(scene);
    const Vs::Scene::Projection view(*fragment->camera(), BenchScene::kWidth, BenchScene::kHeight,
                                     fragment->bounds());
    const PickWish wish{.vertices = true, .edges = true};
    awaitTrees(scene);
    BenchScene::KernelPicks kernel(scene, *fragment->camera(), view, wish.tolerance);
    Times own, kernels;
    constexpr int kSide = 30;
    for (int i = 0; i < kSide * kSide; ++i) {
        const double x = BenchScene::kWidth * (0.2 + 0.6 * (i % kSide) / kSide);
        const double y = BenchScene::kHeight * (0.2 + 0.6 * (i / kSide) / kSide);
        own.take([&] { return !pickAt(*fragment->viewFragmentNode(), view, x, y, wish).empty(); });
        kernels.take([&] { return kernel.pick(x, y); });
    }
    std::printf("%s: %zu parts, %d places\n", name.c_str(), scene.parts.size(), kSide * kSide);
    const std::pair<const char*, Times*> rows[] = {{"quillet", &own}, {"the kernel's own", &kernels}};
    for (const auto& [who, times] : rows)
        std::printf("%-18s %8.4f ms in the middle, %8.4f of 99 %%, %8.4f at most; %zu found\n", who,
                    times->at(0.5), times->at(0.99), times->at(1), times->found);
    const double start = milliseconds();
    const size_t held = pickArea(*fragment->viewFragmentNode(), view,
                                 {.right = view.width(), .top = view.height(), .crossing = true})
                            .size();
    std::printf("a band over all    %8.1f ms; %zu bodies that are seen\n", milliseconds() - start, held);
    std::printf("ratio              %8.1f in the middle, %.1f of 99 %%\n", kernels.at(0.5) / own.at(0.5),
                kernels.at(0.99) / own.at(0.99));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    return BenchScene::measureAll(argc, argv, measure);
}
