#pragma once

#include <epoxy/gl.h>
#include <initializer_list>
#include <vector>

namespace Rendra {

/// Vertices that are sent anew for each drawing, because there are few of them and they rarely stay. To be
/// used with the context current throughout.
class VertexStream
{
public:
    /// Makes the buffer for vertices that consist of nothing but floats: so many for each of the shader's
    /// inputs, from location 0 on.
    void make(std::initializer_list<int> floats);
    /// Sends the vertices in place of those before, and makes them what is drawn.
    template <class Vertex>
    void fill(const std::vector<Vertex>& vertices) const
    {
        send(vertices.data(), vertices.size() * sizeof(Vertex));
    }
    void release();

private:
    void send(const void* vertices, size_t bytes) const;

    GLuint m_array = 0, m_buffer = 0;
};

} // namespace Rendra
