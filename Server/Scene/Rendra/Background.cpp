#include "Server/Scene/Rendra/Background.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/Rendra/Shaders.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Rendra {

namespace {

/// Of the table; twice as many where it matters most, about the horizon.
constexpr int kElevations = 1024;

} // namespace

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
    glDeleteTextures(1, &m_table);
}

// As a function of the elevation's root, so that the horizon is as sharp as it should be.
void Background::prepareTable(const Vs::Scene::Environment& environment)
{
    if (!m_table)
        glGenTextures(1, &m_table);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_table);
    if (m_inTable == &environment)
        return;
    m_inTable = &environment;
    std::vector<float> colours;
    for (int i = 0; i < kElevations; ++i) {
        const double root = (i + 0.5) / kElevations * 2 - 1;
        const double height = root * std::abs(root);
        const Vs::Colour seen = environment.seen({std::sqrt(1 - height * height), 0, height});
        colours.insert(colours.end(), {seen.r, seen.g, seen.b});
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB32F, kElevations, 1, 0, GL_RGB, GL_FLOAT, colours.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void Background::draw(const RenderTarget& target, const Area& tile, const Vs::Scene::Projection& projection,
                      const GkVector3d& up, const Vs::Scene::Environment& environment,
                      const EnvironmentLight& light)
{
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    prepareTable(environment);
    m_program.use();
    glUniform1i(m_program.uniform("table"), 0);
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
