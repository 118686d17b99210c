#pragma once

#include "Server/Base/Status.h"
#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

#include <array>
#include <cstdint>

namespace Vs::Scene {
class Projection;
}

namespace Rendra {

/// How much of the sky the seen places of the faces are kept from by what stands near them: corners and the
/// feet of bodies get darker. Found from the depths of a picture alone, before it is drawn.
class Occlusion
{
public:
    /// How far beyond its tile the picture of depths has to reach, in its pixels, so that the borders of
    /// tiles do not show.
    static constexpr int kMargin = 40;

    /// What the occlusion follows from: as long as all of this is the same, it need not be found again.
    struct Source
    {
        uint64_t scene = 0, shapes = 0;
        std::array<double, 12> view{}; ///< The rows of the view matrix.
        std::array<double, 11>
            lens{}; ///< The projection, the part of the picture, the reach, what is left out.
        friend bool operator==(const Source&, const Source&) = default;
    };
    /// Whether the texture is that of the source already; if not, the next `finish` makes it so.
    bool isOf(const Source& source);

    /// Prepares for depths of `width` by `height` pixels, margins included, and binds what they are drawn
    /// into. False, with nothing bound, if the driver cannot do it.
    bool begin(int width, int height);
    /// The program that draws the depths; it takes `view` and `projection` like the others.
    const Program& depthProgram() const { return m_depthOnly; }
    /// Works out the occlusion from the depths. The part from (x0, y0) to (x1, y1) of the view, margins
    /// included, was drawn. `radius` is how far things matter to each other, in millimetres.
    void finish(const Vs::Scene::Projection& projection, double x0, double y0, double x1, double y1,
                double radius);
    /// One channel, from 0 (all is hidden) to 1, of the size given to `begin`.
    GLuint texture() const { return m_smooth.texture(); }

    void release();

private:
    bool makePrograms();

    Program m_depthOnly, m_find, m_blur;
    Layer m_depth, m_raw, m_smooth;
    GLuint m_noArray = 0;
    Source m_source;
    bool m_tried = false, m_works = false, m_found = false;
};

} // namespace Rendra
