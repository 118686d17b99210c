#include "Server/Scene/Rendra/Occlusion.h"

#include "Server/Scene/Projection.h"
#include "Server/Scene/Rendra/CommonShaders.h"

namespace Rendra {

namespace {

/// Sixteen samples around each pixel, rotated by one of sixteen angles that repeat every four pixels in both
/// directions: averaged over four by four neighbours, no pattern is left.
constexpr const char* kFindFragment = R"(
uniform sampler2D depths;
uniform vec4 window; // lower left corner and size of the view at distance 1, or everywhere in a parallel one
uniform vec2 range;  // near and far
uniform bool perspective;
uniform float radius;
uniform float mostPixels;
out float result;

float ahead(float depth)
{
    return perspective ? range.x * range.y / (range.y - depth * (range.y - range.x)) : mix(range.x, range.y, depth);
}

vec3 place(ivec2 pixel)
{
    ivec2 size = textureSize(depths, 0);
    float distance = ahead(texelFetch(depths, clamp(pixel, ivec2(0), size - 1), 0).r);
    vec2 at = window.xy + (vec2(pixel) + 0.5) / vec2(size) * window.zw;
    return vec3(at * (perspective ? distance : 1.0), -distance);
}

vec3 shorter(vec3 a, vec3 b)
{
    return abs(a.z) < abs(b.z) ? a : b;
}

void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    result = 1.0;
    if (texelFetch(depths, pixel, 0).r == 1.0)
        return;
    vec3 here = place(pixel);
    // Of the neighbours on both sides the one that is surely on the same face gives its slope.
    vec3 along = shorter(place(pixel + ivec2(1, 0)) - here, here - place(pixel - ivec2(1, 0)));
    vec3 upward = shorter(place(pixel + ivec2(0, 1)) - here, here - place(pixel - ivec2(0, 1)));
    vec3 normal = normalize(cross(along, upward));

    float pixelSize = window.w / float(textureSize(depths, 0).y) * (perspective ? -here.z : 1.0);
    float reach = min(radius / pixelSize, mostPixels);
    if (reach < 2.0)
        return;
    float within = reach * pixelSize;
    float turn = float((pixel.x & 3) * 4 + (pixel.y & 3)) * 0.392699;
    float hidden = 0.0;
    for (int i = 0; i < 16; ++i) {
        float angle = turn + float(i) * 2.399963;
        float length = reach * sqrt((float(i) + 0.5) / 16.0);
        vec3 other = place(pixel + ivec2(round(vec2(cos(angle), sin(angle)) * length))) - here;
        float far2 = dot(other, other);
        float rise = dot(other, normal) * inversesqrt(max(far2, 1e-30));
        hidden += max(rise - 0.08, 0.0) * max(1.0 - far2 / (within * within), 0.0);
    }
    result = clamp(1.0 - hidden / 16.0 * 3.6, 0.0, 1.0);
}
)";

constexpr const char* kBlurFragment = R"(
uniform sampler2D raw;
uniform sampler2D depths;
uniform float slack; // depths that differ by more belong to different faces
out float result;

void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy), last = textureSize(raw, 0) - 1;
    float depth = texelFetch(depths, pixel, 0).r;
    float sum = 0.0, weights = 0.0;
    for (int y = -2; y < 2; ++y)
        for (int x = -2; x < 2; ++x) {
            ivec2 other = clamp(pixel + ivec2(x, y), ivec2(0), last);
            float weight = abs(texelFetch(depths, other, 0).r - depth) < slack ? 1.0 : 0.001;
            sum += texelFetch(raw, other, 0).r * weight;
            weights += weight;
        }
    result = sum / weights;
}
)";

} // namespace

bool Occlusion::isOf(const Source& source)
{
    if (m_found && source == m_source)
        return true;
    m_found = false;
    m_source = source;
    return false;
}

// A picture without ambient occlusion is better than none, so a failure here is not reported.
bool Occlusion::makePrograms()
{
    if (!m_tried) {
        m_tried = true;
        Vs::Status ignored;
        m_works = m_depthOnly.make("depth", {kInstance, kDepthVertex}, {kDepthFragment}, ignored) &&
                  m_find.make("occlusion", {kWholeVertex}, {kFindFragment}, ignored) &&
                  m_blur.make("blur", {kWholeVertex}, {kBlurFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return m_works;
}

bool Occlusion::begin(int width, int height)
{
    if (!makePrograms())
        return false;
    if (!m_raw.make(Layer::Kind::Value, width, height) || !m_smooth.make(Layer::Kind::Value, width, height) ||
        !m_depth.make(Layer::Kind::Depth, width, height))
        return false;
    m_depth.begin();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glClear(GL_DEPTH_BUFFER_BIT);
    return true;
}

void Occlusion::finish(const Vs::Scene::Projection& projection, double x0, double y0, double x1, double y1,
                       double radius)
{
    glDisable(GL_DEPTH_TEST);
    glBindVertexArray(m_noArray);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, m_raw.texture());
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_depth.texture());

    m_raw.begin();
    m_find.use();
    glUniform1i(m_find.uniform("depths"), 0);
    glUniform4f(m_find.uniform("window"), float((2 * x0 - 1) * projection.halfWidth()),
                float((2 * y0 - 1) * projection.halfHeight()), float(2 * (x1 - x0) * projection.halfWidth()),
                float(2 * (y1 - y0) * projection.halfHeight()));
    glUniform2f(m_find.uniform("range"), float(projection.clipNear()), float(projection.clipFar()));
    glUniform1i(m_find.uniform("perspective"), projection.perspective());
    glUniform1f(m_find.uniform("radius"), float(radius));
    glUniform1f(m_find.uniform("mostPixels"), float(kMargin - 2));
    glDrawArrays(GL_TRIANGLES, 0, 3);

    m_smooth.begin();
    m_blur.use();
    glUniform1i(m_blur.uniform("depths"), 0);
    glUniform1i(m_blur.uniform("raw"), 1);
    glUniform1f(m_blur.uniform("slack"), 0.01f);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
    glEnable(GL_DEPTH_TEST);
    m_found = true;
}

void Occlusion::release()
{
    for (Layer* layer : {&m_depth, &m_raw, &m_smooth})
        layer->release();
    for (Program* program : {&m_depthOnly, &m_find, &m_blur})
        program->release();
    glDeleteVertexArrays(1, &m_noArray);
    *this = Occlusion();
}

} // namespace Rendra
