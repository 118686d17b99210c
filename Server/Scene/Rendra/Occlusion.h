#pragma once

#include "Server/Base/Status.h"
#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

#include <array>
#include <cstdint>

namespace Rendra {

/// Screen-space ambient occlusion: how much of the sky nearby geometry hides from the visible faces, which
/// darkens corners and the feet of bodies. Computed only from the depths of a picture, before it is drawn.
/// Since it looks at the same places, it also tells how much of a lamp's light soft shadows leave there.
class Occlusion
{
public:
    /// How far beyond its tile the depth picture must reach, in its pixels, so that the borders of tiles
    /// don't show.
    static constexpr int kMargin = 40;

    /// What the occlusion depends on: as long as all of this is the same, it needn't be computed again.
    struct Source
    {
        uint64_t scene = 0, shapes = 0;
        std::array<double, 12> view{}; ///< The rows of the view matrix.
        std::array<double, 11>
            lens{}; ///< The projection, the part of the picture, the radius, what is left out.
        std::array<double, 3> toLamp{}; ///< Zero without soft shadows.
        friend bool operator==(const Source&, const Source&) = default;
    };
    /// Whether the texture is that of the source already; if not, the next `finish` updates it.
    bool isOf(const Source& source);

    /// Prepares for depths of `width` by `height` pixels, margins included, and binds the framebuffer for
    /// them; `lit` for soft shadows as well. False, with nothing bound, if the driver can't do it.
    bool begin(int width, int height, bool lit);
    /// The program that draws the depths; it takes `view` and `projection` like the others.
    const Program& depthProgram() const { return m_depthOnly; }
    /// Computes the occlusion from the depths, which cover the part from (x0, y0) to (x1, y1) of the view,
    /// margins included. `radius` is how far things affect each other, in millimetres, or 0 for not at all.
    /// What lies outside of `touched`, in pixels of the depths, is never looked up and left as it is.
    void finish(const Frame& frame, double x0, double y0, double x1, double y1, double radius,
                const Area& touched);
    /// From 0 (fully occluded) to 1, of the size given to `begin`. With soft shadows, three more channels
    /// tell how much of the lamp's light reaches what is in the middle of the pixel, and what begins beside
    /// it, farther away or nearer.
    GLuint texture() const { return m_smooth.texture(); }
    GLuint depths() const { return m_depth.texture(); }

    void release();

private:
    bool makePrograms();

    Program m_depthOnly, m_find[2], m_blur[2]; ///< The second with soft shadows.
    Layer m_depth, m_raw, m_smooth;
    GLuint m_noArray = 0;
    Source m_source;
    bool m_tried = false, m_works = false, m_found = false, m_lit = false;
};

} // namespace Rendra
