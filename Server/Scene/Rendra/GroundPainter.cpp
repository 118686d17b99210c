#include "Server/Scene/Rendra/GroundPainter.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

namespace {

/// The ground ends at so many times half the size of the bodies.
constexpr double kFarthest = 9;
constexpr float kColour[3] = {0.875f, 0.885f, 0.895f};

constexpr const char* kVertex = R"(#version 330 core
uniform mat4 view;       // from places on the ground to the camera
uniform mat4 projection;
uniform float farthest;
out vec2 place;

void main()
{
    place = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.0 * farthest - farthest;
    gl_Position = projection * (view * vec4(place, 0.0, 1.0));
}
)";

constexpr const char* kFragment = R"(#version 330 core
in vec2 place;
uniform float farthest;
uniform vec3 colour;
uniform float strength;
uniform bool plain;      // false: what darkens is drawn alone
uniform bool shadowed;
uniform sampler2D darkness;
uniform vec4 darknessPlace; // from places to the texture: factors and offsets
out vec4 result;

void main()
{
    float fade = (1.0 - smoothstep(0.12, 1.0, length(place) / farthest)) * strength;
    float dark = 0.0;
    if (shadowed) {
        vec2 at = place * darknessPlace.xy + darknessPlace.zw;
        if (all(greaterThan(at, vec2(0.0))) && all(lessThan(at, vec2(1.0))))
            dark = texture(darkness, at).r;
    }
    dark = 0.72 * dark;
    float grain = fract(sin(dot(gl_FragCoord.xy, vec2(12.9898, 78.233))) * 43758.5453) - 0.5;
    if (plain)
        result = vec4(colour * (1.0 - dark) + grain / 255.0, fade);
    else
        result = vec4(0.0, 0.0, 0.0, dark * fade);
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

} // namespace

bool GroundPainter::make(Vs::Status& status)
{
    glGenVertexArrays(1, &m_noArray);
    return m_program.make("ground", kVertex, kFragment, status);
}

void GroundPainter::release()
{
    m_program.release();
    m_contact.release();
    glDeleteVertexArrays(1, &m_noArray);
}

void GroundPainter::draw(const Frame& frame)
{
    const Vs::Scene::RenderParams& params = frame.params();
    if (!params.groundPlaneEnabled() || params.visualStyle() == Vs::Scene::kHelpersOnly)
        return;
    const Ground* ground = frame.scene.ground.find(frame.scene.list, params.groundPlaneOrientation());
    if (!ground || !(ground->size() > 0))
        return;
    const bool shadowed = params.groundShadowEnabled() && m_contact.find(frame, *ground);
    drawPlane(frame, *ground, shadowed);
}

void GroundPainter::drawPlane(const Frame& frame, const Ground& ground, bool shadowed)
{
    const GkMatrix3d view = placement(frame, ground);
    const double steep = steepness(frame.projection, view);
    if (steep == 0)
        return;
    const double farthest = kFarthest * ground.size() / 2;
    frame.drawIntoPicture();
    m_program.use();
    m_program.setMatrix("view", view.entry);
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    m_program.setMatrix("projection", clip);
    glUniform1f(m_program.uniform("farthest"), float(farthest));
    glUniform3fv(m_program.uniform("colour"), 1, kColour);
    // What is seen at a flat angle goes away softly when the eye passes the ground.
    glUniform1f(m_program.uniform("strength"), float(std::min(1.0, steep / 0.05)));
    glUniform1i(m_program.uniform("plain"), !frame.target.transparentBackground);
    glUniform1i(m_program.uniform("shadowed"), shadowed);
    glActiveTexture(GL_TEXTURE0);
    if (shadowed) {
        const ContactShadow::Kept& kept = frame.scene.contact;
        glBindTexture(GL_TEXTURE_2D, kept.darkness.texture());
        glUniform1i(m_program.uniform("darkness"), 0);
        glUniform4f(m_program.uniform("darknessPlace"), float(1 / kept.width), float(1 / kept.depth),
                    float((ground.left + ground.width / 2 - kept.left) / kept.width),
                    float((ground.front + ground.depth / 2 - kept.front) / kept.depth));
    }
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    // The ground reaches beyond the bodies, and they alone decide where the clip planes are.
    glEnable(GL_DEPTH_CLAMP);
    glEnable(GL_BLEND);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisable(GL_DEPTH_CLAMP);
    glBindTexture(GL_TEXTURE_2D, 0);
    frame.drawIntoPicture();
}

} // namespace Rendra
