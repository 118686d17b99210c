#include "Server/Scene/Rendra/GroundPainter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// The radius of the ground, in multiples of half the size of the bodies.
constexpr double kFarthest = 9;
/// The margin around a tile that is mirrored too, in pixels of the framebuffer per pixel of the picture: what
/// is far from the ground is mirrored with blurred edges.
constexpr int kMirrorMargin = 10;
/// How much a shadow darkens at most. Through wires it is seen whole, and they are drawn dark.
constexpr float kDarkest = 0.72f, kDarkestOfWires = 0.2f;

constexpr const char* kVertex = R"(
uniform mat4 view;       // from places on the ground to the camera
uniform mat4 projection;
uniform float farthest;
out vec2 place;
out vec3 viewPosition;

void main()
{
    place = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.0 * farthest - farthest;
    vec4 seen = view * vec4(place, 0.0, 1.0);
    viewPosition = seen.xyz;
    gl_Position = projection * seen;
}
)";

constexpr const char* kFragment = R"(
in vec2 place;
in vec3 viewPosition;
uniform float farthest;
uniform vec3 up;         // in the camera's coordinates
uniform vec3 colour;
uniform float strength;
uniform bool plain;      // false: what darkens and is mirrored is drawn alone
uniform bool perspective;

uniform bool darkened;
uniform float darkest;
uniform sampler2D darkness;
uniform vec4 darknessPlace; // from places to the texture: factors and offsets
uniform bool lit;
uniform bool litSoftly;
uniform sampler2D softLight;
uniform vec4 softLightPlace; // the same for it

uniform bool mirrored;
uniform sampler2D mirror;
uniform sampler2D mirrorDepths;
uniform vec4 mirrorPlace; // from pixels of the framebuffer: factors and offsets
uniform vec4 window;      // as the mirror sees it: lower left corner and size at distance 1
uniform vec2 range;       // near and far
uniform float height;     // of the bodies
uniform float margin;
out vec4 result;

// How deep below the ground what is mirrored at a place of the mirror seems to be.
float depthBelow(vec2 at)
{
    float depth = textureLod(mirrorDepths, at, 0.0).r;
    if (depth == 1.0)
        return height;
    float ahead = perspective ? range.x * range.y / (range.y - depth * (range.y - range.x)) : mix(range.x, range.y, depth);
    vec3 seen = vec3((window.xy + at * window.zw) * (perspective ? ahead : 1.0), -ahead);
    return max(dot(viewPosition - seen, up), 0.0);
}

// The farther from the ground, the fainter and the more blurred. Software drivers compute whatever stands in a
// condition, and all of a loop whose length they know.
vec4 mirrorImage()
{
    vec2 at = gl_FragCoord.xy * mirrorPlace.xy + mirrorPlace.zw;
    float blur = clamp(depthBelow(at) / height * 1.6, 0.02, 1.0) * margin * 0.5;
    vec4 sum = vec4(0.0);
    int last = mirrored ? 12 : 0;
    for (int i = 0; i < last; ++i) {
        float angle = float(i) * 2.399963;
        vec2 other = at + vec2(cos(angle), sin(angle)) * sqrt((float(i) + 0.5) / 12.0) * blur * mirrorPlace.xy;
        vec4 seen = textureLod(mirror, other, 0.0);
        sum += seen * (1.0 - smoothstep(0.0, 0.85, depthBelow(other) / height));
    }
    return sum / 12.0;
}

void main()
{
    float fade = (1.0 - smoothstep(0.12, 1.0, length(place) / farthest)) * strength;
    vec3 dark = vec3(0.0);
    if (darkened) {
        vec2 at = place * darknessPlace.xy + darknessPlace.zw;
        if (all(greaterThan(at, vec2(0.0))) && all(lessThan(at, vec2(1.0))))
            dark = vec3(darkest * texture(darkness, at).r);
    }
    vec3 reaching = vec3(1.0);
    if (lit)
        reaching = lampReaches(viewPosition, up, 1.0);
    if (litSoftly)
        reaching = texture(softLight, clamp(place * softLightPlace.xy + softLightPlace.zw, vec2(0.0), vec2(1.0))).rgb;
    dark = 1.0 - (1.0 - dark) * mix(vec3(0.68), vec3(1.0), reaching);
    vec4 image = vec4(0.0);
    if (mirrored) {
        vec3 toViewer = perspective ? normalize(-viewPosition) : vec3(0.0, 0.0, 1.0);
        float level = 1.0 - max(dot(toViewer, up), 0.0);
        image = mirrorImage() * mix(0.34, 0.75, level * level * level);
    }
    float grain = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715)))) - 0.5;
    float most = max(dark.r, max(dark.g, dark.b));
    // Without a ground of its own, a shadow takes away what is behind it; light through glass leaves it a hue.
    float cover = plain ? 1.0 : most;
    vec3 ground = colour * (plain ? 1.0 - dark : 1.0 - dark / max(most, 1e-4)) + (plain ? grain / 255.0 : 0.0);
    // The image, which comes multiplied by its opacity, lies over the ground.
    float opacity = image.a + cover * (1.0 - image.a);
    vec3 seen = (image.rgb + ground * cover * (1.0 - image.a)) / max(opacity, 1e-4);
    result = vec4(seen, opacity * fade);
}
)";

/// From places on the ground, in millimetres from its middle, to the camera's coordinates.
GkMatrix3d placement(const Frame& frame, const Ground& ground)
{
    const GkVector3d middle = frame.scene.list.origin() + ground.middle();
    GkMatrix3d matrix;
    for (const auto& [column, direction] :
         {std::pair(0, ground.right), {1, ground.forward}, {2, ground.up}, {3, middle}}) {
        matrix.entry[0][column] = direction.x;
        matrix.entry[1][column] = direction.y;
        matrix.entry[2][column] = direction.z;
    }
    return frame.projection.view() * matrix;
}

/// How steeply one looks down on the ground, from 0 (along it, or from below) to 1.
double steepness(const Vs::Scene::Projection& projection, const GkMatrix3d& view)
{
    const GkVector3d up = view * GkVector3d(0, 0, 1);
    if (!projection.perspective())
        return std::max(0.0, up.z);
    const GkVector3d middle(view.entry[0][3], view.entry[1][3], view.entry[2][3]);
    return std::max(0.0, -middle.dotProduct(up) / std::max(middle.length(), 1e-12));
}

/// A little brighter than the environment's ground, so that the plane is visible on it.
void setColour(const Program& program, const Vs::Scene::Environment& environment)
{
    const auto onScreen = [](float ground, float sky) {
        return std::pow(std::min(0.9f, ground * 0.92f + sky * 0.10f + 0.01f), 1 / 2.2f);
    };
    const Vs::Colour &ground = environment.ground, &sky = environment.horizon;
    glUniform3f(program.uniform("colour"), onScreen(ground.r, sky.r), onScreen(ground.g, sky.g),
                onScreen(ground.b, sky.b));
}

Area grown(const Area& part, int margin)
{
    return {part.x - margin, part.y - margin, part.width + 2 * margin, part.height + 2 * margin};
}

int mirrorMargin(const Frame& frame)
{
    return kMirrorMargin * std::max(1, int(std::lround(frame.target.lineWidth)));
}

/// The scene as it would be below the ground.
Vs::Scene::Projection mirroredView(const Frame& frame, const Ground& ground)
{
    const GkVector3d& up = ground.up;
    const double shift = 2 * (ground.level + frame.scene.list.origin().dotProduct(up));
    const double along[3] = {up.x, up.y, up.z};
    GkMatrix3d reflection;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            reflection.entry[row][column] -= 2 * along[row] * along[column];
        reflection.entry[row][3] = along[row] * shift;
    }
    return frame.projection.mirrored(reflection, frame.fragment.viewFragmentNode()->boundingBox());
}

} // namespace

// Most sessions never show the ground, so its program is created on first use.
bool GroundPainter::make(Vs::Status&)
{
    return true;
}

bool GroundPainter::makeProgram()
{
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored;
        m_program.make("ground", {kVertex}, {ObjectShadow::kPlaces, ObjectShadow::kLookUp, kFragment},
                       ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return bool(m_program);
}

void GroundPainter::release()
{
    m_program.release();
    m_contact.release();
    m_lamp.release();
    m_mirror.release();
    glDeleteVertexArrays(1, &m_noArray);
}

void GroundPainter::collect()
{
    m_mirror.releaseIfLarge();
}

void GroundPainter::draw(const Frame& frame)
{
    const Vs::Scene::RenderParams& params = frame.params();
    // Before an environment, what is realistic stands on its floor; without one, as in captured pictures, it
    // stands alone.
    const bool plane = params.groundPlaneEnabled();
    const bool standing = params.visualStyle() == Vs::Scene::kRealistic && frame.target.dome &&
                          frame.target.effects && params.groundShadowEnabled();
    if (!(plane || standing) || !frame.showsModel())
        return;
    const Ground* ground = frame.scene.ground.find(frame.scene.list, params.groundPlaneOrientation());
    if (!ground || !(ground->size() > 0) || !makeProgram())
        return;
    if (steepness(frame.projection, placement(frame, *ground)) == 0)
        return;
    Look look;
    look.plain = plane && !frame.target.transparentBackground;
    look.shadowed = params.groundShadowEnabled() && m_contact.find(frame, *ground);
    if (params.groundShadowEnabled() && m_bodies.findShadows(frame)) {
        look.litSoftly = ObjectShadow::areSoft(frame) && m_lamp.find(frame, *ground);
        look.lit = !look.litSoftly;
    }
    const int style = params.visualStyle();
    look.wires = style == Vs::Scene::kWireframe || style == Vs::Scene::kWireframeWithHiddenEdges ||
                 style == Vs::Scene::kWireframeWithVisibleEdges;
    look.mirrored =
        plane && params.groundReflectionEnabled() && frame.target.effects && drawMirror(frame, *ground);
    drawPlane(frame, *ground, look);
}

// All bodies are above the ground, and so all mirror images below it: nothing needs clipping.
bool GroundPainter::drawMirror(const Frame& frame, const Ground& ground)
{
    const Area into = grown(frame.part, mirrorMargin(frame));
    if (!m_mirror.make(Layer::Kind::Colour, into.width, into.height))
        return false;
    const Vs::Scene::Projection projection = mirroredView(frame, ground);
    RenderTarget target = frame.target;
    target.framebuffer = m_mirror.framebuffer();
    target.samples = 1;
    const Frame mirror{.fragment = frame.fragment,
                       .scene = frame.scene,
                       .meshes = frame.meshes,
                       .projection = projection,
                       .target = target,
                       .area = frame.area,
                       .part = into,
                       .tile = into,
                       .statistics = frame.statistics,
                       .environment = frame.environment,
                       .light = frame.light,
                       .coarse = frame.coarse,
                       .quick = frame.quick,
                       .software = frame.software,
                       .smallest = frame.smallest};
    frame.scene.instances.update(frame.scene.list, projection, frame.smallest);
    mirror.drawIntoPicture();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glFrontFace(GL_CW);
    m_bodies.drawFaces(mirror);
    glFrontFace(GL_CCW);
    frame.scene.instances.update(frame.scene.list, frame.projection, frame.smallest);
    return true;
}

void GroundPainter::setMirror(const Frame& frame, const Ground& ground)
{
    const Vs::Scene::Projection projection = mirroredView(frame, ground);
    const Area into = grown(frame.part, mirrorMargin(frame));
    const Area& area = frame.area;
    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, m_mirror.texture());
    glActiveTexture(GL_TEXTURE4);
    glBindTexture(GL_TEXTURE_2D, m_mirror.depths());
    glActiveTexture(GL_TEXTURE0);
    glUniform1i(m_program.uniform("mirror"), 3);
    glUniform1i(m_program.uniform("mirrorDepths"), 4);
    const float perX = 1.0f / float(into.width), perY = 1.0f / float(into.height);
    glUniform4f(m_program.uniform("mirrorPlace"), perX, perY, float(frame.tile.x - into.x) * perX,
                float(frame.tile.y - into.y) * perY);
    const double halfWidth = projection.halfWidth(), halfHeight = projection.halfHeight();
    glUniform4f(m_program.uniform("window"), float((2.0 * (into.x - area.x) / area.width - 1) * halfWidth),
                float((2.0 * (into.y - area.y) / area.height - 1) * halfHeight),
                float(2 * halfWidth * into.width / area.width),
                float(2 * halfHeight * into.height / area.height));
    glUniform2f(m_program.uniform("range"), float(projection.clipNear()), float(projection.clipFar()));
    glUniform1f(m_program.uniform("height"), float(std::max(ground.height(), 1e-3 * ground.size())));
    glUniform1f(m_program.uniform("margin"), float(mirrorMargin(frame)));
}

void GroundPainter::drawPlane(const Frame& frame, const Ground& ground, const Look& look)
{
    const GkMatrix3d view = placement(frame, ground);
    const GkVector3d up = view * GkVector3d(0, 0, 1);
    // From places to the texture that covers a rectangle of the ground.
    const auto setPlace = [this](const char* name, const Ground& ground, const auto& kept) {
        glUniform4f(m_program.uniform(name), float(1 / kept.width), float(1 / kept.depth),
                    float((ground.left + ground.width / 2 - kept.left) / kept.width),
                    float((ground.front + ground.depth / 2 - kept.front) / kept.depth));
    };
    frame.drawIntoPicture();
    m_program.use();
    m_program.setMatrix("view", view.entry);
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    m_program.setMatrix("projection", clip);
    glUniform1f(m_program.uniform("farthest"), float(kFarthest * ground.size() / 2));
    glUniform3f(m_program.uniform("up"), float(up.x), float(up.y), float(up.z));
    setColour(m_program, frame.environment);
    // At grazing angles the ground fades out smoothly as the eye passes it.
    glUniform1f(m_program.uniform("strength"),
                float(std::min(1.0, steepness(frame.projection, view) / 0.05)));
    glUniform1i(m_program.uniform("plain"), look.plain);
    glUniform1i(m_program.uniform("perspective"), frame.projection.perspective());
    glUniform1i(m_program.uniform("darkened"), look.shadowed);
    glUniform1f(m_program.uniform("darkest"), look.wires ? kDarkestOfWires : kDarkest);
    glUniform1i(m_program.uniform("lit"), look.lit);
    glUniform1i(m_program.uniform("litSoftly"), look.litSoftly);
    glUniform1i(m_program.uniform("mirrored"), look.mirrored);
    ObjectShadow::setUnits(m_program);
    if (look.lit)
        ObjectShadow::set(m_program, frame);
    if (look.litSoftly) {
        const LampOnGround::Kept& kept = frame.scene.onGround;
        glActiveTexture(GL_TEXTURE8);
        glBindTexture(GL_TEXTURE_2D, kept.light.texture());
        glUniform1i(m_program.uniform("softLight"), 8);
        setPlace("softLightPlace", ground, kept);
    }
    if (look.mirrored)
        setMirror(frame, ground);
    if (look.shadowed) {
        const ContactShadow::Kept& kept = frame.scene.contact;
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, kept.darkness.texture());
        glUniform1i(m_program.uniform("darkness"), 0);
        setPlace("darknessPlace", ground, kept);
    }
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    // The ground reaches beyond the bodies, which alone determine the clip planes.
    glEnable(GL_DEPTH_CLAMP);
    glEnable(GL_BLEND);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisable(GL_DEPTH_CLAMP);
    glBindTexture(GL_TEXTURE_2D, 0);
    frame.drawIntoPicture();
}

} // namespace Rendra
