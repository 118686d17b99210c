#pragma once

#include "Server/Base/Status.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Vs::Scene {

class ViewFragment;

/// A picture in memory: RGBA, eight bits each, not premultiplied, the top row first, without gaps.
struct Image
{
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> pixels;

    const uint8_t* pixel(uint32_t x, uint32_t y) const { return &pixels[(size_t(y) * width + x) * 4]; }
};

/// The settings of a still picture.
struct ImageOptions
{
    bool antiAliasing = true;
    bool transparentBackground = false;
    bool dome = true;                       ///< As RenderTarget::dome.
    bool grid = false, gridNumbers = false; ///< As in RenderTarget.
    bool highlights = true;                 ///< Whether what is selected or pointed at is highlighted.
    /// Many more samples for each pixel where `antiAliasing` is on: for pictures that are kept, not for a
    /// canvas that moves.
    bool fine = true;
    bool moving = false;  ///< As RenderTarget::moving.
    bool effects = false; ///< As RenderTarget::effects; a fine picture has them always.
    /// Pixels of the picture per logical pixel: for high-density screens, on which lines are wider by the
    /// same factor.
    float pixelRatio = 1;

    /// Those of the GraphicsOptionGroup.
    static ImageOptions current();
};

/// Draws views without a window or display, on a context of its own that it creates at the first picture and
/// keeps. What was drawn before is kept as well, so a second picture of a model costs only what changed.
/// Works in a thread of its own, so the caller's current context is left alone; the caller waits. Main thread
/// only.
class OffscreenRenderer
{
public:
    /// Opens the library that draws at the first call. Throws std::runtime_error if that fails.
    static OffscreenRenderer* get();

    /// The largest side of a picture.
    static constexpr uint32_t kLargestSide = 16384;

    /// Draws the fragments in their order. Larger pictures are put together from tiles. Returns false with an
    /// error in the status, and an empty image, if there is no way to draw on this machine, if a side is 0 or
    /// larger than kLargestSide, or if the memory doesn't suffice.
    virtual bool render(const std::vector<ViewFragment*>& fragments, uint32_t width, uint32_t height,
                        const ImageOptions& options, Image& image, Status& status) = 0;

    /// Makes the context, unless there is one. Returns false with the error in the status if this machine
    /// can't draw.
    virtual bool prepare(Status& status) = 0;

    /// Frees the context and all that it holds; the next picture makes a new one.
    virtual void release() = 0;

    /// What draws, for an about box or a report ("4.5 (Core Profile) Mesa ..., llvmpipe ..."); empty before
    /// the first picture.
    virtual std::wstring description() const = 0;

    /// Begins to start the driver in the thread that draws; a picture that is asked for meanwhile waits for
    /// that. Returns at once.
    virtual void expect() = 0;
    /// Waits for what `expect` has begun. Needed before the process ends, as a driver at work may not.
    virtual void settle() = 0;

protected:
    // Never destroyed: the driver may end before the last object of static storage does.
    ~OffscreenRenderer() = default;
};

} // namespace Vs::Scene
