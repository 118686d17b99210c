#include "Server/Scene/Rendra/Sketch.h"

#include "Server/Scene/Rendra/CommonShaders.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// The numbers are those of the view commands and of the user's options.
constexpr int kPastel = 1, kGraphite = 3;
/// How far around a place its outline is searched for, in logical pixels, including the trembling of the
/// hand.
constexpr int kMargin = 5;

/// What the outlines are computed from: which way faces look, and how far away they are.
constexpr const char* kShapeVertex = R"(
layout(location = 1) in vec4 normal;
out vec3 viewPosition;
out vec3 viewNormal;

void main()
{
    vec4 seen = placed(position);
    viewPosition = seen.xyz;
    viewNormal = normalize(turned(normal.xyz));
    gl_Position = projection * seen;
}
)";

constexpr const char* kShapeFragment = R"(
in vec3 viewPosition;
in vec3 viewNormal;
uniform bool perspective;
out vec4 result;

void main()
{
    vec3 toViewer = perspective ? -viewPosition : vec3(0.0, 0.0, 1.0);
    vec3 n = normalize(viewNormal);
    result = vec4((dot(n, toViewer) < 0.0 ? -n : n) * 0.5 + 0.5, 1.0);
}
)";

constexpr const char* kTools = R"(
uniform sampler2D picture; // multiplied by its opacity
uniform sampler2D normals;
uniform sampler2D depths;
uniform ivec2 pictureOffset; // from pixels of the framebuffer
uniform ivec2 shapeOffset;
uniform vec2 placeOffset;    // to pixels of the whole picture
uniform float pixel;         // pixels of the framebuffer for a logical one
uniform vec2 range;          // near and far
uniform bool perspective;
out vec4 result;

float dice(ivec2 cell)
{
    uvec2 u = uvec2(cell + 65536);
    uint h = u.x * 0x9E3779B1u ^ u.y * 0x85EBCA77u;
    h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
    h = (h ^ (h >> 12)) * 0x297A2D39u;
    return float((h ^ (h >> 15)) & 0xFFFFu) / 65535.0;
}

float noise(vec2 at)
{
    vec2 cell = floor(at), part = at - cell;
    part = part * part * (3.0 - 2.0 * part);
    ivec2 c = ivec2(cell);
    return mix(mix(dice(c), dice(c + ivec2(1, 0)), part.x), mix(dice(c + ivec2(0, 1)), dice(c + ivec2(1, 1)), part.x), part.y);
}

float ahead(ivec2 at)
{
    float depth = texelFetch(depths, at, 0).r;
    float seen = perspective ? range.x * range.y / (range.y - depth * (range.y - range.x)) : mix(range.x, range.y, depth);
    return (seen - range.x) / (range.y - range.x);
}

// From 0 to 1: how surely an outline or an edge runs within `reach` logical pixels.
float outline(vec2 place, float reach)
{
    vec2 tremble = vec2(noise(place / 23.0), noise(place / 23.0 + 71.0)) * 2.6 - 1.3;
    ivec2 at = ivec2(gl_FragCoord.xy + tremble * pixel) + shapeOffset;
    int step = max(1, int(reach * pixel + 0.5));
    float here = ahead(at), edge = 0.0;
    bool solid = texelFetch(depths, at, 0).r < 1.0;
    const ivec2 ways[4] = ivec2[](ivec2(1, 0), ivec2(0, 1), ivec2(1, 1), ivec2(1, -1));
    for (int i = 0; i < 4; ++i) {
        ivec2 one = at + ways[i] * step, other = at - ways[i] * step;
        bool oneSolid = texelFetch(depths, one, 0).r < 1.0, otherSolid = texelFetch(depths, other, 0).r < 1.0;
        if (oneSolid != solid || otherSolid != solid)
            return 1.0;
        if (!solid)
            continue;
        // On a plane, both sides differ by the same.
        float bend = abs(ahead(one) + ahead(other) - 2.0 * here);
        float turn = dot(texelFetch(normals, one, 0).xyz * 2.0 - 1.0, texelFetch(normals, other, 0).xyz * 2.0 - 1.0);
        edge = max(edge, max(smoothstep(0.012, 0.03, bend), smoothstep(0.8, 0.5, turn)));
    }
    return edge;
}

float brightness(vec3 colour)
{
    return dot(colour, vec3(0.30, 0.59, 0.11));
}
)";

/// Few tones, much paper, and outlines in a darker shade of what they surround.
constexpr const char* kPastelFragment = R"(
void main()
{
    vec2 place = (gl_FragCoord.xy + placeOffset) / pixel;
    vec4 seen = texelFetch(picture, ivec2(gl_FragCoord.xy) + pictureOffset, 0);
    vec3 colour = seen.rgb / max(seen.a, 1e-3);
    bool solid = texelFetch(depths, ivec2(gl_FragCoord.xy) + shapeOffset, 0).r < 1.0;

    float tone = brightness(colour);
    float wet = noise(place / 47.0) * 0.6 + noise(place / 19.0) * 0.4 - 0.5; // where the colour ran
    float steps = (tone + wet * 0.10) * 5.0;
    float stepped = (floor(steps) + smoothstep(0.30, 0.70, fract(steps))) / 5.0;
    colour *= mix(1.0, max(stepped, 0.05) / max(tone, 0.05), solid ? 0.75 : 0.3);
    colour = mix(vec3(brightness(colour)), colour, 0.78);
    const vec3 paper = vec3(0.985, 0.975, 0.95);
    colour = mix(colour, paper, (solid ? 0.34 : 0.55) - wet * 0.22);

    float line = outline(place, 0.8) * 0.6 + outline(place + 31.0, 1.7) * 0.4;
    colour = mix(colour, colour * colour * 0.42, line * (0.75 + 0.5 * wet));
    float grain = noise(place / 1.3) * 0.6 + noise(place / 2.9) * 0.4;
    colour *= 0.955 + 0.075 * grain;
    float opacity = max(seen.a, line * 0.8);
    result = vec4(min(colour, 1.0) * opacity, opacity);
}
)";

/// The darker, the more layers of strokes; the paper's grain takes up the graphite unevenly.
constexpr const char* kGraphiteFragment = R"(
float strokes(vec2 place, float angle, float apart, float darkness)
{
    vec2 along = vec2(cos(angle), sin(angle));
    vec2 at = vec2(dot(place, along), dot(place, vec2(-along.y, along.x)));
    at.y += (noise(at / vec2(55.0, 40.0)) - 0.5) * 3.2; // no hand draws straight
    float row = floor(at.y / apart);
    float pressure = 0.55 + 0.45 * noise(vec2(at.x / 34.0, row * 7.3));
    float away = abs(at.y / apart - row - 0.5 - (dice(ivec2(int(row), 5)) - 0.5) * 0.35);
    float width = 0.10 + 0.34 * darkness;
    return pressure * smoothstep(width + 0.14, width - 0.06, away);
}

void main()
{
    vec2 place = (gl_FragCoord.xy + placeOffset) / pixel;
    vec4 seen = texelFetch(picture, ivec2(gl_FragCoord.xy) + pictureOffset, 0);
    bool solid = texelFetch(depths, ivec2(gl_FragCoord.xy) + shapeOffset, 0).r < 1.0;
    float darkness = (1.0 - brightness(seen.rgb / max(seen.a, 1e-3))) * seen.a;
    darkness = solid ? darkness * 1.15 : max(darkness - 0.22, 0.0) * 0.75;

    float grain = noise(place / 1.2) * 0.55 + noise(place / 2.6) * 0.45;
    float graphite = darkness * darkness * 0.30;
    graphite += strokes(place, -0.62, 4.2, darkness) * smoothstep(0.10, 0.42, darkness) * 0.36;
    graphite += strokes(place + 17.0, 0.71, 4.8, darkness) * smoothstep(0.42, 0.66, darkness) * 0.34;
    graphite += strokes(place + 43.0, -1.35, 3.9, darkness) * smoothstep(0.64, 0.86, darkness) * 0.34;
    float line = max(outline(place, 0.8), 0.55 * outline(place + 57.0, 0.8));
    graphite = max(graphite, line * (0.62 + 0.25 * noise(place / 9.0)));
    graphite *= 0.62 + 0.62 * grain;

    vec3 paper = vec3(0.968, 0.964, 0.952) - 0.022 * grain;
    vec3 lead = vec3(0.17, 0.175, 0.19);
    float covered = clamp(graphite, 0.0, 0.94);
    float opacity = max(seen.a, line * 0.85);
    result = vec4(mix(paper, lead, covered) * opacity, opacity);
}
)";

int marginOf(const Frame& frame)
{
    return int(std::ceil(kMargin * std::max(1.0f, frame.target.lineWidth)));
}

} // namespace

bool Sketch::makePrograms()
{
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored;
        m_shape.make("shapes", {kInstance, kShapeVertex}, {kShapeFragment}, ignored);
        m_pastel.make("pastel", {kWholeVertex}, {kTools, kPastelFragment}, ignored);
        m_graphite.make("graphite", {kWholeVertex}, {kTools, kGraphiteFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return m_shape && m_pastel && m_graphite;
}

void Sketch::release()
{
    for (Program* program : {&m_shape, &m_pastel, &m_graphite})
        program->release();
    m_shapes.release();
    m_picture.release();
    glDeleteVertexArrays(1, &m_noArray);
}

void Sketch::collect()
{
    m_shapes.releaseIfLarge();
    m_picture.releaseIfLarge();
}

void Sketch::draw(const Frame& frame)
{
    const int effect = frame.params().nprEffect();
    if ((effect != kPastel && effect != kGraphite) || !frame.target.effects || !frame.showsModel() ||
        !makePrograms() || !copyPicture(frame) || !drawShapes(frame))
        return;
    const Program& program = effect == kPastel ? m_pastel : m_graphite;
    frame.drawIntoPicture();
    program.use();
    glUniform1i(program.uniform("picture"), 0);
    glUniform1i(program.uniform("normals"), 1);
    glUniform1i(program.uniform("depths"), 2);
    const GLuint textures[] = {m_picture.texture(), m_shapes.texture(), m_shapes.depths()};
    for (const GLenum unit : {2u, 1u, 0u}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glBindTexture(GL_TEXTURE_2D, textures[unit]);
    }
    const int left = frame.part.x - frame.tile.x, bottom = frame.part.y - frame.tile.y;
    const int margin = marginOf(frame);
    glUniform2i(program.uniform("pictureOffset"), -left, -bottom);
    glUniform2i(program.uniform("shapeOffset"), margin - left, margin - bottom);
    glUniform2f(program.uniform("placeOffset"), float(frame.tile.x), float(frame.tile.y));
    glUniform1f(program.uniform("pixel"), std::max(1.0f, frame.target.lineWidth));
    glUniform2f(program.uniform("range"), float(frame.projection.clipNear()),
                float(frame.projection.clipFar()));
    glUniform1i(program.uniform("perspective"), frame.projection.perspective());
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    frame.drawIntoPicture();
}

bool Sketch::copyPicture(const Frame& frame)
{
    const Area& part = frame.part;
    if (!m_picture.make(Layer::Kind::Picture, part.width, part.height))
        return false;
    const int left = part.x - frame.tile.x, bottom = part.y - frame.tile.y;
    m_picture.begin();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    glBlitFramebuffer(left, bottom, left + part.width, bottom + part.height, 0, 0, part.width, part.height,
                      GL_COLOR_BUFFER_BIT, GL_NEAREST);
    return true;
}

bool Sketch::drawShapes(const Frame& frame)
{
    const int margin = marginOf(frame);
    const Area into{frame.part.x - margin, frame.part.y - margin, frame.part.width + 2 * margin,
                    frame.part.height + 2 * margin};
    if (!m_shapes.make(Layer::Kind::Colour, into.width, into.height))
        return false;
    m_shapes.begin();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    frame.setView(m_shape, into);
    frame.drawFaces(Frame::Faces::OfOpaque);
    frame.drawFaces(Frame::Faces::OfGlass);
    return true;
}

} // namespace Rendra
