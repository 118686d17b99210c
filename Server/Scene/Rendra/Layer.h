#pragma once

#include <epoxy/gl.h>

namespace Rendra {

/// A texture to draw into, which passes the result of one step of a picture to the next. Freed by `release`,
/// with the context current.
class Layer
{
public:
    enum class Kind {
        Colour,  ///< RGBA, with a separate depth buffer.
        Picture, ///< RGBA only.
        Value,   ///< One channel from 0 to 1, in 256 steps.
        Pair,    ///< Two channels from 0 to 1, in 65536 steps.
        Pairs,   ///< Two of these.
        Depth,
    };

    /// Creates storage of `width` by `height` pixels unless there is such already. Returns false if the
    /// driver can't.
    [[nodiscard]] bool make(Kind kind, int width, int height);
    /// Directs the following drawing into the whole of the layer.
    void begin() const;
    void release();
    /// Releases what only large pictures need, which aren't drawn again and again like those of a canvas.
    void releaseIfLarge();

    GLuint framebuffer() const { return m_framebuffer; }
    GLuint texture() const { return m_texture; }
    /// The depths of a layer that has them besides its colours.
    GLuint depths() const { return m_depths; }
    int width() const { return m_width; }
    int height() const { return m_height; }

private:
    static GLuint makeTexture(Kind kind, int width, int height);

    GLuint m_texture = 0, m_depths = 0, m_framebuffer = 0;
    int m_width = 0, m_height = 0;
    Kind m_kind = Kind::Colour;
};

} // namespace Rendra
