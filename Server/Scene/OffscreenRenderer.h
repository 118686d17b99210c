#pragma once

#include "Server/Base/Status.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Vs::Scene {

class ViewFragment;

/// A picture in memory: RGBA, eight bits each, not premultiplied, top row first, without gaps.
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
    /// The axis cross and the scale bar, if the user's options show them.
    bool marks = false;
    bool highlights = true; ///< Whether what is selected or pointed at is highlighted.
    /// Many more samples per pixel if `antiAliasing` is on: for pictures that are kept, not for a canvas that
    /// moves.
    bool fine = true;
    bool moving = false;  ///< As RenderTarget::moving.
    bool effects = false; ///< As RenderTarget::effects; a fine picture has them always.
    /// Pixels of the picture per logical pixel: for high-density screens, on which lines are wider by the
    /// same factor.
    float pixelRatio = 1;

    /// For how many seconds at most the picture waits for the finer meshes that it needs. With 0 these are
    /// made for a later picture, below 0 none are.
    double finerWait = 30;

    /// Those of the GraphicsOptionGroup.
    static ImageOptions current();
};

/// Draws views without a window or display, with its own context, which it creates for the first picture and
/// keeps. What was drawn before is cached, so a second picture of a model costs only what changed. Works in a
/// separate thread, so the caller's current context is left alone; the caller waits. Main thread only.
class OffscreenRenderer
{
public:
    /// Loads the rendering library at the first call. Throws std::runtime_error if that fails.
    static OffscreenRenderer* get();

    /// The largest side of a picture.
    static constexpr uint32_t kLargestSide = 16384;

    /// Draws the fragments in order. Larger pictures are assembled from tiles. Returns false with an error in
    /// the status, and an empty image, if there is no way to draw on this machine, if a side is 0 or larger
    /// than kLargestSide, or if there isn't enough memory. After a reset of the driver everything is made
    /// anew and drawn again.
    virtual bool render(const std::vector<ViewFragment*>& fragments, uint32_t width, uint32_t height,
                        const ImageOptions& options, Image& image, Status& status) = 0;

    /// Creates the context, unless it exists. Returns false with the error in the status if this machine
    /// can't draw.
    virtual bool prepare(Status& status) = 0;

    /// Frees the context and everything in it; the next picture creates a new one.
    virtual void release() = 0;

    /// The driver's name and version, for an about box or a report ("4.5 (Core Profile) Mesa ..., llvmpipe
    /// ..."); empty before the first picture.
    virtual std::wstring description() const = 0;

    /// Starts the driver in the rendering thread, and has it compile what most pictures need; a picture
    /// requested meanwhile waits for that. Returns at once. `once`: the first picture is the only one that is
    /// worth preparing for, so that nothing is kept for a second one at its expense.
    virtual void expect(bool once) = 0;
    /// Waits for what `expect` started. Needed before the process ends, which a busy driver may not survive.
    virtual void settle() = 0;

protected:
    // Never destroyed: the driver may end before the last static object is destroyed.
    ~OffscreenRenderer() = default;
};

} // namespace Vs::Scene
