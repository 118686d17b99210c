#pragma once

#include "Server/Base/Status.h"
#include "Server/Scene/Rendra/Program.h"

#include <epoxy/gl.h>

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
    GLuint texture() const { return m_smooth.texture; }

    void release();

private:
    struct Layer
    {
        GLuint texture = 0, framebuffer = 0;
        void make(GLenum format, GLenum attachment, int width, int height);
        void release();
    };
    bool makePrograms();

    Program m_depthOnly, m_find, m_blur;
    Layer m_depth, m_raw, m_smooth;
    GLuint m_noArray = 0;
    int m_width = 0, m_height = 0;
    bool m_tried = false, m_works = false;
};

} // namespace Rendra
