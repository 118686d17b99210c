#include "Server/Scene/Rendra/Background.h"

#include "Server/Scene/Rendra/Shaders.h"

namespace Rendra {

namespace {

struct Rgb
{
    float r, g, b;
};
constexpr Rgb kDomeLow{0.93f, 0.945f, 0.96f}, kDomeHigh{0.62f, 0.70f, 0.79f};
constexpr Rgb kPlainLow{0.975f, 0.98f, 0.985f}, kPlainHigh{0.83f, 0.865f, 0.905f};

} // namespace

bool Background::make(Vs::Status& status)
{
    if (!m_program.make("background", Shaders::kBackgroundVertex, Shaders::kBackgroundFragment, status))
        return false;
    glGenVertexArrays(1, &m_noArray);
    return true;
}

void Background::release()
{
    m_program.release();
    glDeleteVertexArrays(1, &m_noArray);
}

void Background::draw(const RenderTarget& target, const Area& tile)
{
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    m_program.use();
    const Rgb& low = target.dome ? kDomeLow : kPlainLow;
    const Rgb& high = target.dome ? kDomeHigh : kPlainHigh;
    glUniform3f(m_program.uniform("low"), low.r, low.g, low.b);
    glUniform3f(m_program.uniform("high"), high.r, high.g, high.b);
    glUniform2f(m_program.uniform("tile"), float(tile.y) / float(target.height),
                float(tile.y + tile.height) / float(target.height));
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glDepthMask(GL_TRUE);
}

} // namespace Rendra
