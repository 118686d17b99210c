#pragma once

#include <epoxy/gl.h>
#include <initializer_list>
#include <vector>

namespace Rendra {

/// Vertices that are uploaded again for each drawing, because there are few of them and they rarely stay the
/// same. Use it with the context current throughout.
class VertexStream
{
public:
    /// Creates the buffer for vertices that consist only of floats: the given number for each of the shader's
    /// inputs, from location 0 on.
    void make(std::initializer_list<int> floats);
    /// Uploads the vertices in place of the previous ones, and binds them for drawing.
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
