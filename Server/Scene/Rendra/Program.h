#pragma once

#include "Server/Base/Status.h"

#include <epoxy/gl.h>
#include <initializer_list>

namespace Rendra {

/// The text of a shader in GLSL 3.30, without its version line: the pieces one after the other.
using Pieces = std::initializer_list<const char*>;

/// A linked pair of shaders. Freed by `release`, with the context current.
class Program
{
public:
    /// False, with the compiler's message in the status, if it can't be made. Most have no geometry shader.
    bool make(const char* name, Pieces vertex, Pieces fragment, Vs::Status& status, Pieces geometry = {});
    void release();

    explicit operator bool() const { return m_program != 0; }
    void use() const { glUseProgram(m_program); }
    /// -1 if the compiler removed the uniform; setting that does nothing.
    GLint uniform(const char* name) const { return glGetUniformLocation(m_program, name); }
    /// Sets a uniform of the program, which must be current; the matrix is given row by row.
    void setMatrix(const char* name, const double (&rows)[4][4]) const;

private:
    GLuint m_program = 0;
};

} // namespace Rendra
