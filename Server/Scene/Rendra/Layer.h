#pragma once

#include <epoxy/gl.h>

namespace Rendra {

/// A texture that is drawn into, for what one step of a picture hands to the next. Freed by `release`, with
/// the context current.
class Layer
{
public:
    enum class Kind {
        Colour,  ///< RGBA, with depths of its own beside it.
        Picture, ///< RGBA alone.
        Value,   ///< One number from 0 to 1, in 256 steps.
        Depth,
    };

    /// Makes storage of `width` by `height` pixels if there is none of that size. Returns false if the driver
    /// cannot.
    [[nodiscard]] bool make(Kind kind, int width, int height);
    /// Directs what follows into the whole of the layer.
    void begin() const;
    void release();
    /// Releases what only large pictures need, which are not drawn again and again as those of a canvas are.
    void releaseIfLarge();

    GLuint framebuffer() const { return m_framebuffer; }
    GLuint texture() const { return m_texture; }
    /// The depths of a layer that has some beside its colours.
    GLuint depths() const { return m_depths; }
    int width() const { return m_width; }
    int height() const { return m_height; }

private:
    static GLuint makeTexture(Kind kind, int width, int height);

    GLuint m_texture = 0, m_depths = 0, m_framebuffer = 0;
    int m_width = 0, m_height = 0;
};

} // namespace Rendra
