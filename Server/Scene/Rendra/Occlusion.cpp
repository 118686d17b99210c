#include "Server/Scene/Rendra/Occlusion.h"

#include "Server/Scene/Projection.h"
#include "Server/Scene/Rendra/CommonShaders.h"

#include <cmath>

namespace Rendra {

namespace {

/// The neighbours that are averaged lie within so many pixels.
constexpr int kBlurMargin = 3;

/// Every second pixel of each row is examined, those in between in the next row, with sixteen samples around
/// it. They are rotated by one of eight angles that repeat every four pixels in both directions: averaged
/// over four by four neighbours, no pattern is left.
constexpr int kSamples = 16;

/// Where the samples lie for a reach of 1, without rotation.
std::array<float, 2 * kSamples> samplePlaces()
{
    std::array<float, 2 * kSamples> places{};
    for (size_t i = 0; i < kSamples; ++i) {
        const double angle = double(i) * 2.399963, away = std::sqrt((double(i) + 0.5) / kSamples);
        places[2 * i] = float(std::cos(angle) * away);
        places[2 * i + 1] = float(std::sin(angle) * away);
    }
    return places;
}

constexpr const char* kFindFragment = R"(
uniform sampler2D depths;
uniform vec4 window; // lower left corner and size of the view at distance 1, or everywhere in a parallel one
uniform vec2 range;  // near and far
uniform bool perspective;
uniform float radius;
uniform float mostPixels;
uniform vec2 samples[16];
#ifdef LIT
out vec4 result; // with how much the lamp reaches, and whether that counts
#else
out vec2 result; // how much of the sky is seen, and the depth
#endif

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
    pixel.x = 2 * pixel.x + (pixel.y & 1);
    float depth = texelFetch(depths, pixel, 0).r;
#ifdef LIT
    result = vec4(1.0, depth, 1.0, 0.0);
#else
    result = vec2(1.0, depth);
#endif
    vec3 here = place(pixel);
    // Of the neighbours on both sides the one that is surely on the same face gives its slope.
    vec3 along = shorter(place(pixel + ivec2(1, 0)) - here, here - place(pixel - ivec2(1, 0)));
    vec3 upward = shorter(place(pixel + ivec2(0, 1)) - here, here - place(pixel - ivec2(0, 1)));
    vec3 normal = normalize(cross(along, upward));

    float pixelSize = window.w / float(textureSize(depths, 0).y) * (perspective ? -here.z : 1.0);
    float reach = min(radius / pixelSize, mostPixels);
    float turn = float((pixel.x & 2) * 2 + (pixel.y & 3)) * 0.785398;
#ifdef LIT
    result.b = lampReachesSoftly(here, normal, turn, depth < 1.0);
    result.a = depth < 1.0 && dot(normal, toLamp) > 0.02 ? 1.0 : 0.0;
#endif
    float within = reach * pixelSize;
    vec2 right = reach * vec2(cos(turn), sin(turn));
    float hidden = 0.0;
    // A loop whose length isn't known ends early where nothing is to be found.
    int last = depth < 1.0 && reach >= 2.0 ? 16 : 0;
    for (int i = 0; i < last; ++i) {
        vec2 off = vec2(samples[i].x * right.x - samples[i].y * right.y, samples[i].x * right.y + samples[i].y * right.x);
        vec3 other = place(pixel + ivec2(floor(off + 0.5))) - here;
        float far2 = dot(other, other);
        float rise = dot(other, normal) * inversesqrt(max(far2, 1e-30));
        hidden += max(rise - 0.08, 0.0) * max(1.0 - far2 / (within * within), 0.0);
    }
    result.r = clamp(1.0 - hidden / 16.0 * 3.6, 0.0, 1.0);
}
)";

constexpr const char* kBlurFragment = R"(
uniform sampler2D raw;
uniform sampler2D depths;
uniform float slack; // depths that differ by more belong to different faces
#ifdef LIT
out vec4 result; // then how much the lamp reaches here, and what is behind and before this, if it begins beside it
#else
out float result;
#endif

void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy), last = textureSize(raw, 0) - 1;
    float depth = texelFetch(depths, pixel, 0).r;
    float sum = 0.0, weights = 0.0;
#ifdef LIT
    // Other faces may be in the light where this one isn't: only what lies in its plane counts.
    float ahead = texelFetch(depths, pixel + ivec2(1, 0), 0).r - depth, back = texelFetch(depths, pixel - ivec2(1, 0), 0).r - depth;
    float above = texelFetch(depths, pixel + ivec2(0, 1), 0).r - depth, below = texelFetch(depths, pixel - ivec2(0, 1), 0).r - depth;
    vec4 beside = abs(vec4(ahead, back, above, below));
    float near = 3.0 * (min(beside.x, beside.y) + min(beside.z, beside.w)) + 1e-6;
    float lit = 0.0, lightWeights = 1e-9;
#endif
    for (int y = -2; y < 2; ++y) {
        int row = clamp(pixel.y + y, 0, last.y);
        int first = (pixel.x - 2 + ((pixel.x + row) & 1) - (row & 1)) >> 1;
        for (int x = first; x < first + 2; ++x) {
            vec4 other = texelFetch(raw, ivec2(clamp(x, 0, last.x), row), 0);
            float weight = abs(other.g - depth) < slack ? 1.0 : 0.001;
            sum += other.r * weight;
            weights += weight;
#ifdef LIT
            float share = abs(other.g - depth) < near ? other.a : 1e-4 * other.a;
            lit += other.b * share;
            lightWeights += share;
#endif
        }
    }
#ifdef LIT
    float own = lightWeights > 1e-8 ? lit / lightWeights : 1.0;
    result = vec4(sum / weights, own, own, own);
    // Few pixels are at a rim.
    float farthest = max(max(beside.x, beside.y), max(beside.z, beside.w)) > near ? 2.0 : -2.0;
    vec2 others = vec2(0.0), shares = vec2(0.0);
    for (float y = -2.0; y < farthest; y += 1.0) {
        int row = clamp(pixel.y + int(y), 0, last.y);
        int first = (pixel.x - 2 + ((pixel.x + row) & 1) - (row & 1)) >> 1;
        for (int x = first; x < first + 2; ++x) {
            vec4 other = texelFetch(raw, ivec2(clamp(x, 0, last.x), row), 0);
            float behind = other.g - depth;
            vec2 share = other.a * vec2(behind >= near ? 1.0 : 0.0, behind <= -near ? 1.0 : 0.0);
            others += other.b * share;
            shares += share;
        }
    }
    result.b = shares.x > 0.0 ? others.x / shares.x : own;
    result.a = shares.y > 0.0 ? others.y / shares.y : own;
#else
    result = sum / weights;
#endif
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
        m_works = m_depthOnly.make("depth", {kInstance, kDepthVertex}, {kDepthFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    if (m_works && !m_find[m_lit]) {
        Vs::Status ignored;
        const char* const lit = m_lit ? "#define LIT\n" : "";
        m_works = m_find[m_lit].make("occlusion", {kWholeVertex},
                                     {lit, m_lit ? ObjectShadow::kPlaces : "",
                                      m_lit ? ObjectShadow::kSoftLookUp : "", kFindFragment},
                                     ignored) &&
                  m_blur[m_lit].make("blur", {kWholeVertex}, {lit, kBlurFragment}, ignored);
    }
    return m_works;
}

bool Occlusion::begin(int width, int height, bool lit)
{
    m_lit = lit;
    if (!makePrograms())
        return false;
    if (!m_raw.make(lit ? Layer::Kind::Pairs : Layer::Kind::Pair, (width + 1) / 2, height) ||
        !m_smooth.make(lit ? Layer::Kind::Picture : Layer::Kind::Value, width, height) ||
        !m_depth.make(Layer::Kind::Depth, width, height))
        return false;
    m_depth.begin();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glClear(GL_DEPTH_BUFFER_BIT);
    return true;
}

void Occlusion::finish(const Frame& frame, double x0, double y0, double x1, double y1, double radius,
                       const Area& touched)
{
    const Vs::Scene::Projection& projection = frame.projection;
    const Program &find = m_find[m_lit], &blur = m_blur[m_lit];
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_SCISSOR_TEST);
    const int left = touched.x - kBlurMargin, bottom = touched.y - kBlurMargin;
    const int width = touched.width + 2 * kBlurMargin, height = touched.height + 2 * kBlurMargin;
    glScissor(left / 2 - 1, bottom, width / 2 + 2, height);
    glBindVertexArray(m_noArray);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, m_raw.texture());
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_depth.texture());

    m_raw.begin();
    find.use();
    if (m_lit)
        ObjectShadow::set(find, frame);
    glUniform1i(find.uniform("depths"), 0);
    glUniform4f(find.uniform("window"), float((2 * x0 - 1) * projection.halfWidth()),
                float((2 * y0 - 1) * projection.halfHeight()), float(2 * (x1 - x0) * projection.halfWidth()),
                float(2 * (y1 - y0) * projection.halfHeight()));
    glUniform2f(find.uniform("range"), float(projection.clipNear()), float(projection.clipFar()));
    glUniform1i(find.uniform("perspective"), projection.perspective());
    glUniform1f(find.uniform("radius"), float(radius));
    glUniform1f(find.uniform("mostPixels"), float(kMargin - 2));
    static const std::array<float, 2 * kSamples> places = samplePlaces();
    glUniform2fv(find.uniform("samples"), kSamples, places.data());
    glDrawArrays(GL_TRIANGLES, 0, 3);

    m_smooth.begin();
    glScissor(left, bottom, width, height);
    blur.use();
    glUniform1i(blur.uniform("depths"), 0);
    glUniform1i(blur.uniform("raw"), 1);
    glUniform1f(blur.uniform("slack"), 0.01f);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_SCISSOR_TEST);
    glEnable(GL_DEPTH_TEST);
    m_found = true;
}

void Occlusion::release()
{
    for (Layer* layer : {&m_depth, &m_raw, &m_smooth})
        layer->release();
    for (Program* program : {&m_depthOnly, &m_find[0], &m_find[1], &m_blur[0], &m_blur[1]})
        program->release();
    glDeleteVertexArrays(1, &m_noArray);
    *this = Occlusion();
}

} // namespace Rendra
