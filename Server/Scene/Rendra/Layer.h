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
    bool make(Kind kind, int width, int height);
    /// Directs what follows into the whole of the layer.
    void begin() const;
    void release();
    /// Releases what only large pictures need, which are not drawn again and again as those of a canvas are.
    void releaseIfLarge();

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

/// The vertex shader of what covers the whole of a layer or picture: one triangle, without attributes.
inline constexpr const char* kWholeVertex = R"(#version 330 core
void main()
{
    gl_Position = vec4((gl_VertexID & 1) * 4 - 1, (gl_VertexID >> 1) * 4 - 1, 0.0, 1.0);
}
)";

/// Shaders of what only depths are wanted of; they take the attributes of Attribute.
inline constexpr const char* kDepthVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;

uniform mat4 view;
uniform mat4 projection;

void main()
{
    vec4 p = vec4(position, 1.0);
    gl_Position = projection * (view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0));
}
)";

inline constexpr const char* kDepthFragment = R"(#version 330 core
void main() {}
)";

} // namespace Rendra
