#pragma once

#include "Server/Base/Status.h"
#include "Server/Scene/RenderTarget.h"
#include "Server/Scene/ViewFragment.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Rendra {

/// Draws view fragments with OpenGL 3.3 or later, in the context that is current at each call; all calls of
/// one renderer must come with the same context, or one that shares objects with it. Not thread-safe, but may
/// be used from any one thread as long as nobody changes the scene meanwhile.
///
/// A body that occurs many times is kept and sent once. From one picture to the next only what changed is
/// sent again.
class Renderer
{
public:
    Renderer();
    /// Must come with the context current.
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    /// Makes what is needed for drawing. Returns false with an error in the status if the context cannot do
    /// it. May be called again; only the first call works.
    bool initialize(Vs::Status& status);

    /// Whether no graphics unit does the work, but the processor: a canvas then does without what costs much.
    bool drawsInSoftware() const;

    /// Draws all fragments, each over the ones before, and leaves the state of the context as it needs it:
    /// the caller sets what it depends on.
    void render(const std::vector<Vs::Scene::ViewFragment*>& fragments, const RenderTarget& target);
    /// The common case: into the whole of a framebuffer.
    void render(Vs::Scene::ViewFragment* fragment, int width, int height, uint32_t framebuffer);

    const RenderStatistics& statistics() const;
    /// How many bytes the graphics unit keeps for meshes, as its driver tells. Needs the context.
    uint64_t meshBytes() const;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Rendra
