#include "Server/Scene/Rendra/Background.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/Rendra/Shaders.h"

#include <algorithm>

namespace Rendra {

bool Background::make(Vs::Status& status)
{
    if (!m_program.make("background", Shaders::kBackgroundVertex, Shaders::kBackgroundFragment, status,
                        {Shaders::kSurroundings}))
        return false;
    glGenVertexArrays(1, &m_noArray);
    return true;
}

void Background::release()
{
    m_program.release();
    glDeleteVertexArrays(1, &m_noArray);
}

void Background::draw(const RenderTarget& target, const Area& tile, const Vs::Scene::Projection& projection,
                      const GkVector3d& up, const Vs::Scene::Environment& environment,
                      const EnvironmentLight& light)
{
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    m_program.use();
    light.set(m_program, EnvironmentLight::orientation(up) * projection.view().inverse());
    glUniform1i(m_program.uniform("dome"), target.dome);
    glUniform3f(m_program.uniform("plain"), environment.plain.r, environment.plain.g, environment.plain.b);
    double halfWidth = projection.halfWidth(), halfHeight = projection.halfHeight();
    if (!projection.perspective()) {
        const double lens = Vs::Scene::Camera::s_normalPersLens / 2 / std::min(halfWidth, halfHeight);
        halfWidth *= lens;
        halfHeight *= lens;
    }
    const auto rayX = [&](int x) { return float((2.0 * x / target.width - 1) * halfWidth); };
    const auto rayY = [&](int y) { return float((2.0 * y / target.height - 1) * halfHeight); };
    glUniform4f(m_program.uniform("rays"), rayX(tile.x), rayY(tile.y), rayX(tile.x + tile.width),
                rayY(tile.y + tile.height));
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glDepthMask(GL_TRUE);
}

} // namespace Rendra
