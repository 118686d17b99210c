#pragma once

#include "Server/Base/Status.h"
#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/RenderTarget.h"
#include "Server/Scene/ViewFragment.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Rendra {

/// Draws view fragments with OpenGL 3.3 or later, in the context that is current at each call; all calls of
/// one renderer must be made with the same context, or one that shares objects with it. Not thread-safe, but
/// may be used from any one thread as long as nobody changes the scene meanwhile.
///
/// A body that occurs many times is stored and uploaded once. From one picture to the next only what changed
/// is uploaded again.
class Renderer
{
public:
    Renderer();
    /// Must be destroyed with the context current.
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    /// Creates what is needed for drawing. Returns false with an error in the status if the context isn't
    /// suitable. May be called again; only the first call does anything.
    bool initialize(Vs::Status& status);

    /// Whether rendering is done by the processor, not by a GPU: a canvas then omits what is expensive.
    bool drawsInSoftware() const;

    /// Draws all fragments, each over the ones before, and leaves the state of the context as it needs it:
    /// callers must set the state that they rely on.
    void render(const std::vector<Vs::Scene::ViewFragment*>& fragments, const RenderTarget& target);
    /// The common case: into the whole of a framebuffer.
    void render(Vs::Scene::ViewFragment* fragment, int width, int height, uint32_t framebuffer);

    /// What a picture of the fragments needs finer meshes of; draws nothing and needs no context.
    [[nodiscard]] std::vector<Vs::Scene::FinerWish>
    tooCoarse(const std::vector<Vs::Scene::ViewFragment*>& fragments, const RenderTarget& target);

    /// How many triangles the fragments have altogether; draws nothing and needs no context.
    [[nodiscard]] uint64_t triangles(const std::vector<Vs::Scene::ViewFragment*>& fragments);

    const RenderStatistics& statistics() const;
    /// How many bytes the GPU holds for meshes, as reported by its driver. Needs the context.
    uint64_t meshBytes() const;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Rendra
