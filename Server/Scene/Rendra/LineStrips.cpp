#include "Server/Scene/Rendra/LineStrips.h"

#include "Server/Scene/Rendra/EdgeShaders.h"

#include <utility>

namespace Rendra {

namespace {

constexpr const char* kVertex = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 colour;
uniform mat4 toClip;
uniform vec4 tint;
out vec4 endLine;
out float endDash;

void main()
{
    endLine = colour * tint;
    endDash = 0.0;
    gl_Position = toClip * vec4(position, 1.0);
}
)";

} // namespace

bool LineStrips::begin(const Frame& frame, const double (&toClip)[4][4], const std::vector<Vertex>& vertices)
{
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored;
        m_stream.make({3, 4});
        m_program.make("strips", {kVertex}, {Shaders::kEdgeFragment}, ignored,
                       {"#define CLAMPED\n", Shaders::kLineGeometry});
    }
    m_count = m_program ? GLsizei(vertices.size()) : 0;
    if (m_count == 0)
        return false;
    m_program.use();
    m_program.setMatrix("toClip", toClip);
    glUniform1f(m_program.uniform("dashLength"), 0);
    glUniform2f(m_program.uniform("pixels"), float(frame.part.width) / 2, float(frame.part.height) / 2);
    m_stream.fill(vertices);
    return true;
}

void LineStrips::draw(float width, const float (&tint)[4])
{
    glUniform1f(m_program.uniform("lineWidth"), width);
    glUniform4fv(m_program.uniform("tint"), 1, tint);
    glEnable(GL_DEPTH_CLAMP);
    glDrawArrays(GL_LINES, 0, m_count);
    glDisable(GL_DEPTH_CLAMP);
}

void LineStrips::release()
{
    m_program.release();
    m_stream.release();
}

} // namespace Rendra
