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
                        {Shaders::kSurroundings}) ||
        !m_glowing.make("glowing background", Shaders::kBackgroundVertex, Shaders::kBackgroundFragment,
                        status, {"#define GLOW\n", Shaders::kSurroundings}))
        return false;
    glGenVertexArrays(1, &m_noArray);
    return true;
}

void Background::release()
{
    m_program.release();
    m_glowing.release();
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
        for (const float channel : {seen.r, seen.g, seen.b, 1.0f})
            colours.push_back(std::pow(channel, 1 / 2.2f));
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, kElevations, 1, 0, GL_RGBA, GL_FLOAT, colours.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void Background::draw(const RenderTarget& target, const Area& tile, const Vs::Scene::Projection& projection,
                      const GkVector3d& up, const Vs::Scene::Environment& environment,
                      const EnvironmentLight& light)
{
    const auto onScreen = [](float linear) { return std::pow(linear, 1 / 2.2f); };
    if (!target.dome) {
        const Vs::Colour& plain = environment.plain;
        glClearColor(onScreen(plain.r), onScreen(plain.g), onScreen(plain.b), 1);
        glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    prepareTable(environment);
    const Program& program = environment.glow > 0 || environment.stars > 0 ? m_glowing : m_program;
    program.use();
    glUniform1i(program.uniform("table"), 0);
    light.set(program, EnvironmentLight::orientation(up) * projection.view().inverse());
    double halfWidth = projection.halfWidth(), halfHeight = projection.halfHeight();
    if (!projection.perspective()) {
        const double lens = Vs::Scene::Camera::s_normalPersLens / 2 / std::min(halfWidth, halfHeight);
        halfWidth *= lens;
        halfHeight *= lens;
    }
    const auto rayX = [&](int x) { return float((2.0 * x / target.width - 1) * halfWidth); };
    const auto rayY = [&](int y) { return float((2.0 * y / target.height - 1) * halfHeight); };
    glUniform4f(program.uniform("rays"), rayX(tile.x), rayY(tile.y), rayX(tile.x + tile.width),
                rayY(tile.y + tile.height));
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glDepthMask(GL_TRUE);
}

} // namespace Rendra
