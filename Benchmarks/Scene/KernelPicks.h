#pragma once

#include "Benchmarks/Scene/Parts.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/Projection.h"

#include <memory>

namespace BenchScene {

/// The kernel's own selector on a scene: each part an object of its own, whose faces and edges can be picked.
class KernelPicks
{
public:
    KernelPicks(const Scene& scene, const Vs::Scene::Camera& camera, const Vs::Scene::Projection& view,
                double tolerance);
    ~KernelPicks();
    KernelPicks(const KernelPicks&) = delete;
    KernelPicks& operator=(const KernelPicks&) = delete;

    /// Whether anything is found there, in pixels from the lower left corner.
    bool pick(double x, double y);

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace BenchScene
