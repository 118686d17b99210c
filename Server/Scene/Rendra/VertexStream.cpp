#include "Server/Scene/Rendra/VertexStream.h"

#include "Server/Scene/Rendra/BufferOffset.h"

#include <numeric>

namespace Rendra {

void VertexStream::make(std::initializer_list<int> floats)
{
    glGenVertexArrays(1, &m_array);
    glGenBuffers(1, &m_buffer);
    glBindVertexArray(m_array);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    const int stride = std::accumulate(floats.begin(), floats.end(), 0) * int(sizeof(float));
    GLuint location = 0;
    size_t offset = 0;
    for (const int count : floats) {
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location++, count, GL_FLOAT, GL_FALSE, stride, bufferOffset(offset));
        offset += size_t(count) * sizeof(float);
    }
    glBindVertexArray(0);
}

void VertexStream::send(const void* vertices, size_t bytes) const
{
    glBindVertexArray(m_array);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(bytes), vertices, GL_STREAM_DRAW);
}

void VertexStream::release()
{
    glDeleteVertexArrays(1, &m_array);
    glDeleteBuffers(1, &m_buffer);
    *this = VertexStream();
}

} // namespace Rendra
