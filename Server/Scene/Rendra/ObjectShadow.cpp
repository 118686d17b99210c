#include "Server/Scene/Rendra/ObjectShadow.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/Frame.h"

#include <algorithm>
#include <utility>

namespace Rendra {

namespace {

constexpr int kNone = 0, kSharp = 1, kSoft = 2;

/// The softer a shadow, the fewer pixels it needs.
int resolutionOf(int type)
{
    return type == kSharp ? 2048 : type == kSoft ? 1024 : 640;
}

/// A shadow's edge is averaged over this many pixels in each direction.
int widthOf(int type)
{
    return type == kSharp ? 1 : type == kSoft ? 4 : 7;
}

} // namespace

// Each pixel is compared with the depth that the plane of the face has there, so that a face never shadows
// itself however flat the light falls.
const char* const ObjectShadow::kPlaces = R"(
const bool shadowed = true;
uniform vec3 toLamp;
uniform sampler2D shadows;
uniform mat4 toShadows; // from the camera's coordinates to 0 .. 1
uniform float shadowTexel; // in millimetres

// A place in the shadow map, how deep the plane of a face with that normal goes on beside it, and what depths may
// differ by.
vec3 inShadows(vec3 place, vec3 normal, float facing, out vec2 slope, out float bias)
{
    // Lengths along the three axes are the same.
    float perMillimetre = 1.0 / (shadowTexel * float(textureSize(shadows, 0).x));
    vec3 n = mat3(toShadows) * normal;
    slope = clamp(-n.xy / min(n.z, -0.05 * perMillimetre), vec2(-6.0), vec2(6.0));
    bias = 0.6 * shadowTexel * perMillimetre;
    return (toShadows * vec4(place + normal * shadowTexel * (1.2 - 0.8 * facing), 1.0)).xyz;
}
)";

// The distance to what is in the way tells how blurred the shadow is: at a foot it is sharp. The samples lie
// on a spiral, and their turn differs from pixel to pixel; who calls averages over these.
const char* const ObjectShadow::kSoftLookUp = R"(
uniform float lampSize; // sine of half its angle

float lampReachesSoftly(vec3 place, vec3 normal, float turn, bool asked)
{
    const float kFewest = 1.2, kMost = 12.0; // pixels that edges are blurred by, in each direction
    float facing = dot(normal, toLamp), bias;
    vec2 slope;
    vec3 at = inShadows(place, normal, facing, slope, bias);
    float side = float(textureSize(shadows, 0).x);
    asked = asked && facing > 0.0 && all(greaterThan(at.xy, vec2(0.0))) && all(lessThan(at.xy, vec2(1.0)));
    vec2 right = vec2(cos(turn), sin(turn)), step = right;
    mat2 golden = mat2(-0.737369, 0.675490, -0.675490, -0.737369);
    float before = 0.0, between = 0.0;
    int last = asked ? 5 : 0;
    for (int i = 0; i < last; ++i) {
        vec2 off = step * (sqrt((float(i) + 0.5) / 5.0) * kMost / side);
        step = golden * step;
        float depth = min(at.z + dot(slope, off) - bias, 1.0) - texture(shadows, at.xy + off).r;
        before += depth > 0.0 ? 1.0 : 0.0;
        between += max(depth, 0.0);
    }
    float blur = clamp(between / max(before, 1.0) * lampSize * side, kFewest, kMost);
    last = before > 0.0 ? 6 : 0;
    float sum = 0.0;
    step = right;
    for (int i = 0; i < last; ++i) {
        vec2 off = step * (sqrt((float(i) + 0.5) / 6.0) * blur / side);
        step = golden * step;
        sum += texture(shadows, at.xy + off).r >= min(at.z + dot(slope, off) - bias, 1.0) ? 1.0 : 0.0;
    }
    return before > 0.0 ? sum / 6.0 : 1.0;
}
)";

const char* const ObjectShadow::kLookUp = R"(
uniform int shadowWidth;
uniform bool glassShades;
uniform sampler2D glassLight;
uniform sampler2D glassDepths;

vec3 lampReaches(vec3 place, vec3 normal, float found)
{
    float facing = dot(normal, toLamp), bias;
    vec2 slope;
    float side = float(textureSize(shadows, 0).x);
    vec3 reaching = vec3(found);
#ifndef FOUND
    vec3 at = inShadows(place, normal, facing, slope, bias);
    // The square's first pixel, and how far it is into that: those at its borders count by parts. Nothing outside of
    // the map is in shadow, and nothing that faces away needs a look.
    vec2 corner = at.xy * side - 0.5 * float(shadowWidth), from = floor(corner), into = corner - from;
    bool asks = facing > 0.0 && all(greaterThan(at.xy, vec2(0.0))) && all(lessThan(at.xy, vec2(1.0)));
    int last = asks ? shadowWidth : -1;
    vec2 perPixel = slope / side;
    float rowDepth = at.z - bias + dot(slope, (from + 0.5) / side - at.xy);
    float sum = asks ? 0.0 : float(shadowWidth * shadowWidth);
    for (int y = 0; y <= last; ++y) {
        float row = 0.0;
        for (int x = 0; x <= last; ++x) {
            float weight = x == 0 ? 1.0 - into.x : x == last ? into.x : 1.0;
            float depth = min(rowDepth + float(x) * perPixel.x, 1.0);
            ivec2 pixel = clamp(ivec2(from) + ivec2(x, y), ivec2(0), ivec2(side) - 1);
            row += texelFetch(shadows, pixel, 0).r >= depth ? weight : 0.0;
        }
        sum += row * (y == 0 ? 1.0 - into.y : y == last ? into.y : 1.0);
        rowDepth += perPixel.y;
    }
    reaching = vec3(sum / float(shadowWidth * shadowWidth));
#endif
    // A loop that isn't entered costs nothing, but software drivers compute what stands in a condition.
    float behind = 0.0;
    vec3 passing = vec3(0.0);
    int lookups = glassShades ? 4 : 0;
    for (int i = 0; i < lookups; ++i) {
        vec2 off = (vec2(i & 1, i >> 1) - 0.5) / side;
        vec3 through = inShadows(place, normal, facing, slope, bias);
        float depth = min(through.z + dot(slope, off) - 2.0 * bias, 1.0);
        behind += texture(glassDepths, through.xy + off).r < depth ? 0.25 : 0.0;
        passing += 0.25 * texture(glassLight, through.xy).rgb;
    }
    reaching *= mix(vec3(1.0), passing, behind);
    return reaching;
}
)";

const char* const ObjectShadow::kNoLookUp = R"(
const bool shadowed = false;
const vec3 toLamp = vec3(0.0, 0.0, 1.0);

vec3 lampReaches(vec3 place, vec3 normal, float found)
{
    return vec3(1.0);
}
)";

namespace {

constexpr const char* kGlassVertex = R"(
layout(location = 2) in vec4 faceColour;
layout(location = 6) in vec4 colour;
flat out vec3 passing;

// Light passes through two sides of most bodies, and takes on their hue.
void main()
{
    gl_Position = projection * placed(position);
    vec4 own = faceColour.a > 0.0 ? vec4(faceColour.rgb, faceColour.a * colour.a) : colour;
    vec3 hue = pow(own.rgb / max(max(own.r, own.g), max(own.b, 0.01)), vec3(2.2));
    passing = (1.0 - 0.6 * own.a) * mix(vec3(1.0), hue, own.a);
}
)";

constexpr const char* kGlassFragment = R"(
flat in vec3 passing;
out vec4 result;

void main()
{
    result = vec4(passing, 1.0);
}
)";

} // namespace

bool ObjectShadow::find(const Frame& frame)
{
    const int type = std::clamp(frame.params().drawnShadowType(), 0, 3);
    Kept& kept = frame.scene.lit;
    if (type == kNone && std::exchange(kept.shapes, 0) != 0)
        kept.depths.release(), kept.glass.release();
    if (type == kNone || !frame.target.effects || frame.scene.list.instances() == 0)
        return false;
    const GkVector3d toLamp =
        EnvironmentLight::orientation(frame.params().groundPlaneOrientation()).inverse() *
        frame.environment.lamps[0].direction;
    const DrawList& list = frame.scene.list;
    if (kept.shapes == list.shapeRevision() && kept.type == type && kept.toLamp.isEqualTo(toLamp) &&
        kept.origin.isEqualTo(list.origin()))
        return true;
    // What is cached is never made from coarse meshes.
    if (frame.coarse)
        return false;
    kept.shapes = 0;
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored;
        m_depthOnly.make("shadows", {kInstance, kDepthVertex}, {kDepthFragment}, ignored);
        m_glass.make("shadows of glass", {kInstance, kGlassVertex}, {kGlassFragment}, ignored);
    }
    const BBox bounds = frame.fragment.viewFragmentNode()->boundingBox();
    const double radius = bounds.diagonal() / 2;
    const int resolution = resolutionOf(type);
    if (!m_depthOnly || !(radius > 0) || !kept.depths.make(Layer::Kind::Depth, resolution, resolution))
        return false;

    const GkVector3d right = toLamp.perpVector(), up = toLamp.crossProduct(right);
    const GkVector3d middle = bounds.centre().asVector() - list.origin();
    // A small margin, so that the edge of the shadow map never casts a shadow.
    const double reach = radius * 1.02 * resolution / (resolution - 2 * widthOf(type));
    for (const auto& [row, direction] : {std::pair(0, right), {1, up}, {2, -toLamp}}) {
        double(&entry)[4] = kept.place.entry[row];
        entry[0] = direction.x / reach;
        entry[1] = direction.y / reach;
        entry[2] = direction.z / reach;
        entry[3] = -direction.dotProduct(middle) / reach;
    }
    kept.texel = 2 * reach / resolution;

    frame.scene.instances.showAll(list);
    m_depthOnly.use();
    m_depthOnly.setMatrix("view", GkMatrix3d().entry);
    m_depthOnly.setMatrix("projection", kept.place.entry);
    kept.depths.begin();
    glClear(GL_DEPTH_BUFFER_BIT);
    frame.drawFaces(Frame::Faces::OfOpaque, Frame::Materials::Ignored, Frame::Sides::Both);
    drawGlass(frame, kept);
    frame.scene.instances.update(list, frame.projection, frame.smallest);

    kept.shapes = list.shapeRevision();
    kept.type = type;
    kept.toLamp = toLamp;
    kept.origin = list.origin();
    return true;
}

bool ObjectShadow::areSoft(const Frame& frame)
{
    return frame.scene.lit.type > kSoft;
}

// Everything transparent absorbs light, in any order.
void ObjectShadow::drawGlass(const Frame& frame, Kept& kept)
{
    const bool isThere = frame.scene.list.opacityOfGlass() > 0;
    if (!isThere)
        kept.glass.release();
    kept.hasGlass =
        isThere && m_glass && kept.glass.make(Layer::Kind::Colour, kept.depths.width(), kept.depths.height());
    if (!kept.hasGlass)
        return;
    kept.glass.begin();
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glClearColor(0, 0, 0, 0);
    m_glass.use();
    m_glass.setMatrix("view", GkMatrix3d().entry);
    m_glass.setMatrix("projection", kept.place.entry);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ZERO, GL_SRC_COLOR);
    glDepthMask(GL_FALSE);
    frame.drawFaces(Frame::Faces::OfGlass, Frame::Materials::Ignored, Frame::Sides::Both);
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    frame.drawFaces(Frame::Faces::OfGlass, Frame::Materials::Ignored, Frame::Sides::Both);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

void ObjectShadow::setUnits(const Program& program)
{
    glUniform1i(program.uniform("shadows"), 2);
    glUniform1i(program.uniform("glassLight"), 5);
    glUniform1i(program.uniform("glassDepths"), 6);
}

void ObjectShadow::set(const Program& program, const Frame& frame)
{
    setUnits(program);
    const Kept& kept = frame.scene.lit;
    GkMatrix3d toUnit = GkMatrix3d::translation({0.5, 0.5, 0.5}) * GkMatrix3d::scaling(0.5);
    const GkMatrix3d view = frame.projection.view() * GkMatrix3d::translation(kept.origin);
    program.setMatrix("toShadows", (toUnit * kept.place * view.inverse()).entry);
    const GkVector3d toLamp = frame.projection.view() * kept.toLamp;
    glUniform3f(program.uniform("toLamp"), float(toLamp.x), float(toLamp.y), float(toLamp.z));
    glUniform1f(program.uniform("shadowTexel"), float(kept.texel));
    glUniform1i(program.uniform("shadowWidth"), widthOf(kept.type));
    glUniform1f(program.uniform("lampSize"), frame.environment.lamps[0].size);
    glUniform1i(program.uniform("glassShades"), kept.hasGlass);
    for (const auto& [unit, texture] : {std::pair(GL_TEXTURE2, kept.depths.texture()),
                                        {GL_TEXTURE5, kept.glass.texture()},
                                        {GL_TEXTURE6, kept.glass.depths()}}) {
        glActiveTexture(GLenum(unit));
        glBindTexture(GL_TEXTURE_2D, texture);
    }
    glActiveTexture(GL_TEXTURE0);
}

void ObjectShadow::release()
{
    m_depthOnly.release();
    m_glass.release();
    *this = ObjectShadow();
}

} // namespace Rendra
