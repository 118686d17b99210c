#include "Server/Scene/Rendra/ContactShadow.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/Frame.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

namespace {

/// The shadow's longer side in pixels.
constexpr int kResolution = 400;
/// How far around the bodies the shadow reaches, as fractions of their height and of their size.
constexpr double kReachOfHeight = 0.7, kReachOfSize = 0.06;

/// Each body is approximated by columns that fill everything from its lowest to its highest point. In twelve
/// directions from each place the columns cover pieces of the sky between horizon and zenith; the sky is
/// divided into 32 pieces of equal weight, one bit each, so that columns behind each other count once. The
/// directions are rotated by one of sixteen angles that repeat every four pixels in both directions.
constexpr const char* kFindFragment = R"(
uniform sampler2D lowest;
uniform sampler2D highest;
uniform float height;   // of the bodies, in pixels
uniform float farthest; // place that is looked at, in pixels
out float result;

uint below(int pieces)
{
    return pieces >= 32 ? 0xFFFFFFFFu : (1u << uint(pieces)) - 1u;
}

float ones(uint bits)
{
    bits -= (bits >> 1) & 0x55555555u;
    bits = (bits & 0x33333333u) + ((bits >> 2) & 0x33333333u);
    return float((((bits + (bits >> 4)) & 0x0F0F0F0Fu) * 0x01010101u) >> 24);
}

void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy), last = textureSize(lowest, 0) - 1;
    float jitter = (float((pixel.x & 3) * 4 + ((pixel.y & 3) ^ (pixel.x & 1) * 3)) + 0.5) / 16.0;
    float hidden = 0.0;
    for (int i = 0; i < 12; ++i) {
        float angle = (float(i) + jitter) * 0.5235988;
        vec2 direction = vec2(cos(angle), sin(angle));
        uint covered = 0u;
        for (int j = 0; j < 18; ++j) {
            float part = (float(j) + fract(jitter * 7.0)) / 18.0;
            float away = 0.7 + part * part * farthest;
            ivec2 other = pixel + ivec2(floor(direction * away + 0.5));
            if (any(lessThan(other, ivec2(0))) || any(greaterThan(other, last)))
                break;
            float low = texelFetch(lowest, other, 0).r;
            if (low == 1.0)
                continue;
            vec2 heights = vec2(low, texelFetch(highest, other, 0).r) * height;
            vec2 parts = heights * heights / (heights * heights + away * away);
            covered |= below(int(ceil(parts.y * 32.0))) & ~below(int(parts.x * 32.0 + 0.5));
        }
        hidden += ones(covered);
    }
    hidden /= 12.0 * 32.0;
    // Right below a body there is no sky at all, however low it stands.
    float own = texelFetch(lowest, pixel, 0).r * height;
    hidden = max(hidden, 1.0 - smoothstep(0.0, 3.0, own));
    // No edge where the rectangle ends.
    vec2 inward = min(gl_FragCoord.xy, vec2(last + 1) - gl_FragCoord.xy) / (0.5 * farthest);
    float border = smoothstep(0.0, 1.0, min(inward.x, inward.y));
    result = hidden * border;
}
)";

constexpr const char* kBlurFragment = R"(
out float result;

void main()
{
    result = meanAround(ivec2(gl_FragCoord.xy)).r;
}
)";

} // namespace

// A picture without shadow is better than none, so a failure here is not reported.
bool ContactShadow::makePrograms()
{
    if (!m_tried) {
        m_tried = true;
        Vs::Status ignored;
        m_works = m_depthOnly.make("depth", {kInstance, kDepthVertex}, {kDepthFragment}, ignored) &&
                  m_find.make("ground shadow", {kWholeVertex}, {kFindFragment}, ignored) &&
                  m_blur.make("ground shadow blur", {kWholeVertex}, {kMeanAround, kBlurFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return m_works;
}

bool ContactShadow::find(const Frame& frame, const Ground& ground)
{
    Kept& kept = frame.scene.contact;
    const uint64_t shapes = frame.scene.list.shapeRevision();
    if (kept.shapes == shapes && kept.up.isEqualTo(ground.up))
        return true;
    // What is cached is never made from coarse meshes.
    if (!frame.target.effects || frame.coarse || !makePrograms())
        return false;
    kept.shapes = 0;
    const double reach = ground.height() * kReachOfHeight + ground.size() * kReachOfSize;
    kept.left = ground.left - reach;
    kept.front = ground.front - reach;
    kept.width = ground.width + 2 * reach;
    kept.depth = ground.depth + 2 * reach;
    const double pixel = std::max(kept.width, kept.depth) / kResolution;
    if (!(pixel > 0))
        return false;
    const int width = std::max(4, int(std::ceil(kept.width / pixel)));
    const int height = std::max(4, int(std::ceil(kept.depth / pixel)));
    if (!m_lowest.make(Layer::Kind::Depth, width, height) ||
        !m_highest.make(Layer::Kind::Depth, width, height) ||
        !m_raw.make(Layer::Kind::Value, width, height) || !m_twice.make(Layer::Kind::Value, width, height) ||
        !kept.darkness.make(Layer::Kind::Value, width, height))
        return false;
    findDarkness(frame, ground, kept, {reach / pixel, ground.height() / pixel}, false);
    // A transparent body blocks light in proportion to its opacity.
    if (const float opacity = frame.scene.list.opacityOfGlass(); opacity > 0) {
        glBlendColor(0, 0, 0, opacity);
        findDarkness(frame, ground, kept, {reach / pixel, ground.height() / pixel}, true);
    }
    kept.shapes = shapes;
    kept.up = ground.up;
    for (Layer* layer : {&m_lowest, &m_highest, &m_raw, &m_twice})
        layer->release();
    return true;
}

void ContactShadow::findDarkness(const Frame& frame, const Ground& ground, const Kept& kept,
                                 const Lengths& pixels, bool withGlass)
{
    drawColumns(frame, ground, kept, withGlass);
    glDisable(GL_DEPTH_TEST);
    glBindVertexArray(m_noArray);
    m_raw.begin();
    m_find.use();
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, m_highest.texture());
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_lowest.texture());
    glUniform1i(m_find.uniform("lowest"), 0);
    glUniform1i(m_find.uniform("highest"), 1);
    glUniform1f(m_find.uniform("height"), float(pixels.height));
    glUniform1f(m_find.uniform("farthest"), float(pixels.reach));
    glDrawArrays(GL_TRIANGLES, 0, 3);

    m_blur.use();
    glUniform1i(m_blur.uniform("raw"), 0);
    m_twice.begin();
    glBindTexture(GL_TEXTURE_2D, m_raw.texture());
    glDrawArrays(GL_TRIANGLES, 0, 3);
    if (withGlass) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA);
    }
    kept.darkness.begin();
    glBindTexture(GL_TEXTURE_2D, m_twice.texture());
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
}

void ContactShadow::drawColumns(const Frame& frame, const Ground& ground, const Kept& kept, bool withGlass)
{
    const auto drawFaces = [&] {
        using Faces = Frame::Faces;
        for (const Faces which : {Faces::OfOpaque, Faces::OfGlass})
            if (which == Faces::OfOpaque || withGlass)
                frame.drawFaces(which, Frame::Materials::Ignored, Frame::Sides::Both);
    };
    // From the draw list's coordinates to the rectangle, with the height above the ground as the depth.
    const auto row = [](const GkVector3d& direction, double from, double length, double(&out)[4]) {
        const double factor = 2 / length;
        out[0] = direction.x * factor;
        out[1] = direction.y * factor;
        out[2] = direction.z * factor;
        out[3] = -from * factor - 1;
    };
    double place[4][4] = {};
    row(ground.right, kept.left, kept.width, place[0]);
    row(ground.forward, kept.front, kept.depth, place[1]);
    row(ground.up, ground.level, std::max(ground.height(), 1e-6 * ground.size()), place[2]);
    place[3][3] = 1;

    frame.scene.instances.showAll(frame.scene.list);
    m_depthOnly.use();
    m_depthOnly.setMatrix("view", GkMatrix3d().entry);
    m_depthOnly.setMatrix("projection", place);
    glEnable(GL_DEPTH_CLAMP);
    m_lowest.begin();
    glFrontFace(GL_CW); // from below
    glClear(GL_DEPTH_BUFFER_BIT);
    drawFaces();
    m_highest.begin();
    glFrontFace(GL_CCW);
    glClearDepth(0);
    glClear(GL_DEPTH_BUFFER_BIT);
    glClearDepth(1);
    glDepthFunc(GL_GEQUAL);
    drawFaces();
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_DEPTH_CLAMP);
    frame.scene.instances.update(frame.scene.list, frame.projection, frame.smallest);
}

void ContactShadow::release()
{
    for (Layer* layer : {&m_lowest, &m_highest, &m_raw, &m_twice})
        layer->release();
    for (Program* program : {&m_depthOnly, &m_find, &m_blur})
        program->release();
    glDeleteVertexArrays(1, &m_noArray);
    *this = ContactShadow();
}

} // namespace Rendra
