#include "Server/Scene/Rendra/Background.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/Panorama.h"
#include "Server/Scene/Rendra/CommonShaders.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Rendra {

namespace {

/// The size of the table, indexed by the height on the unit sphere. In pictures of usual size a pixel spans
/// more than one step, so that lookups needn't interpolate: in software, that would cost more than everything
/// else of the background.
constexpr int kElevations = 4096, kUsualHeight = 2160;

/// One triangle over the whole tile.
constexpr const char* kBackgroundVertex = R"(
uniform vec4 rays; // of the lower left and the upper right corner, at distance 1 from the camera
out vec2 ray;

void main()
{
    vec2 corner = vec2((gl_VertexID & 1) * 4 - 1, (gl_VertexID >> 1) * 4 - 1);
    ray = mix(rays.xy, rays.zw, corner * 0.5 + 0.5);
    gl_Position = vec4(corner, 1.0, 1.0);
}
)";

/// With PANORAMA, the table is one. With GLOW, light about the first lamp and the stars are added, which most
/// skies do without. With QUICK, bands may be seen where the colour changes slowly.
constexpr const char* kBackgroundFragment = R"(
in vec2 ray;
uniform float stars;
uniform float haloGlow;
uniform sampler2D table; // of what is seen, by the height on the unit sphere
out vec4 result;

// One star in some of the small cubes that a direction runs through, where it is in the middle of one.
float star(vec3 d)
{
    vec3 place = d * 90.0, cell = floor(place);
    vec3 dice = fract(sin(vec3(dot(cell, vec3(127.1, 311.7, 74.7)), dot(cell, vec3(269.5, 183.3, 246.1)),
                               dot(cell, vec3(113.5, 271.9, 124.6)))) * 43758.5453);
    if (dice.x < 0.94)
        return 0.0;
    float away = distance(place - cell, 0.3 + 0.4 * dice.zyx);
    return (0.25 + 0.75 * dice.y) * smoothstep(0.16, 0.04, away);
}

void main()
{
    vec3 d = toEnvironment * normalize(vec3(ray, -1.0));
#ifdef PANORAMA
    vec3 seen = textureLod(table, vec2(atan(d.x, d.y) / 6.2831853 + 0.5, acos(clamp(d.z, -1.0, 1.0)) / 3.1415927), 0.0).rgb;
    seen *= 0.85;
    // As bright parts of realistic faces.
    seen = mix(seen, 0.6 + 0.4 * (1.0 - exp((0.6 - seen) / 0.4)), greaterThan(seen, vec3(0.6)));
    seen = pow(seen, vec3(1.0 / 2.2));
#else
    vec3 seen = texture(table, vec2(d.z * 0.5 + 0.5, 0.5)).rgb;
#endif
#ifdef GLOW
    if (d.z > 0.0) {
        float towards = max(dot(d, lampDirections[0]), 0.0);
        vec3 more = lampColours[0] * (haloGlow * (0.35 * pow(towards, 24.0) + pow(towards, 900.0)));
        if (stars > 0.0)
            more += stars * star(d) * smoothstep(0.0, 0.25, d.z);
        seen = pow(min(pow(seen, vec3(2.2)) + more, vec3(1.0)), vec3(1.0 / 2.2));
    }
#endif
#ifndef QUICK
    // A grain finer than one step of the colours hides their bands.
    float grain = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715)))) - 0.5;
    seen += grain / 255.0;
#endif
    result = vec4(seen, 1.0);
}
)";

} // namespace

bool Background::make(Vs::Status& status)
{
    glGenVertexArrays(1, &m_noArray);
    return make(m_program, "background", "", status);
}

bool Background::make(Program& program, const char* name, const char* kind, Vs::Status& status)
{
    return program.make(name, {kBackgroundVertex}, {kind, kSurroundings, kBackgroundFragment}, status);
}

// Few pictures need the other programs.
const Program& Background::programFor(const Vs::Scene::Environment& environment, bool quick)
{
    struct Kind
    {
        Program& program;
        bool& tried;
        const char *name, *definition;
    };
    const bool glowing = environment.glow > 0 || environment.stars > 0;
    if (!environment.panorama && !glowing && !quick)
        return m_program;
    const Kind kind = environment.panorama
                          ? Kind{m_panorama, m_triedPanorama, "panorama", "#define PANORAMA\n"}
                      : glowing ? Kind{m_glowing, m_triedGlowing, "glowing background", "#define GLOW\n"}
                                : Kind{m_quick, m_triedQuick, "quick background", "#define QUICK\n"};
    if (!std::exchange(kind.tried, true)) {
        Vs::Status ignored;
        make(kind.program, kind.name, kind.definition, ignored);
    }
    return kind.program ? kind.program : m_program;
}

void Background::release()
{
    for (Program* program : {&m_program, &m_quick, &m_glowing, &m_panorama})
        program->release();
    glDeleteVertexArrays(1, &m_noArray);
    glDeleteTextures(1, &m_table);
}

void Background::prepareTable(const Vs::Scene::Environment& environment)
{
    if (!m_table)
        glGenTextures(1, &m_table);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_table);
    if (m_inTable == &environment)
        return;
    m_inTable = &environment;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, environment.panorama ? GL_REPEAT : GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    if (environment.panorama) {
        const Vs::Scene::Panorama::Picture& picture = environment.panorama->picture();
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB16F, picture.width, picture.height, 0, GL_RGB, GL_FLOAT,
                     picture.channels.data());
        return;
    }
    std::vector<float> colours;
    for (int i = 0; i < kElevations; ++i) {
        const double height = (i + 0.5) / kElevations * 2 - 1;
        const Vs::Colour seen = environment.seen({std::sqrt(1 - height * height), 0, height});
        for (const float channel : {seen.r, seen.g, seen.b, 1.0f})
            colours.push_back(std::pow(channel, 1 / 2.2f));
    }
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, kElevations, 1, 0, GL_RGBA, GL_FLOAT, colours.data());
}

void Background::draw(const RenderTarget& target, const Area& tile, const Vs::Scene::Projection& projection,
                      const GkVector3d& up, const Vs::Scene::Environment& environment,
                      const EnvironmentLight& light, bool quick)
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
    const bool fine = target.height > kUsualHeight || environment.panorama;
    const GLint filter = fine ? GL_LINEAR : GL_NEAREST;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    const Program& program = programFor(environment, quick);
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
