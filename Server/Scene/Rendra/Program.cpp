#include "Server/Scene/Rendra/Program.h"

#include "Server/Base/Strings.h"

#include <string>
#include <vector>

namespace Rendra {

namespace {

GLuint compile(GLenum kind, Pieces pieces, std::string& message)
{
    std::vector<const char*> text{"#version 330 core\n"};
    text.insert(text.end(), pieces);
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, GLsizei(text.size()), text.data(), nullptr);
    glCompileShader(shader);
    GLint works = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &works);
    if (works)
        return shader;
    char log[1024] = "";
    glGetShaderInfoLog(shader, sizeof log, nullptr, log);
    message = log;
    glDeleteShader(shader);
    return 0;
}

} // namespace

bool Program::make(const char* name, Pieces vertex, Pieces fragment, Vs::Status& status, Pieces geometry)
{
    std::string message;
    const bool hasGeometry = geometry.size() > 0;
    const GLuint vertexShader = compile(GL_VERTEX_SHADER, vertex, message);
    const GLuint geometryShader =
        vertexShader && hasGeometry ? compile(GL_GEOMETRY_SHADER, geometry, message) : 0;
    const bool complete = vertexShader && (geometryShader || !hasGeometry);
    const GLuint fragmentShader = complete ? compile(GL_FRAGMENT_SHADER, fragment, message) : 0;
    if (fragmentShader) {
        m_program = glCreateProgram();
        glAttachShader(m_program, vertexShader);
        if (geometryShader)
            glAttachShader(m_program, geometryShader);
        glAttachShader(m_program, fragmentShader);
        glLinkProgram(m_program);
        GLint works = GL_FALSE;
        glGetProgramiv(m_program, GL_LINK_STATUS, &works);
        if (!works) {
            char log[1024] = "";
            glGetProgramInfoLog(m_program, sizeof log, nullptr, log);
            message = log;
            release();
        }
    }
    glDeleteShader(geometryShader);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
    if (m_program)
        return true;
    status.addError(L"The graphics driver refuses the " +
                    Vs::Strings::widen(std::string(name) + " program: " + message));
    return false;
}

void Program::release()
{
    if (m_program)
        glDeleteProgram(m_program);
    m_program = 0;
}

void Program::setMatrix(const char* name, const double (&rows)[4][4]) const
{
    float values[16];
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            values[column * 4 + row] = float(rows[row][column]);
    glUniformMatrix4fv(uniform(name), 1, GL_FALSE, values);
}

} // namespace Rendra
