#include "Server/Scene/Rendra/LayoutGrid.h"

#include "Server/Scene/Rendra/GridNumbers.h"
#include "Server/Types/LengthUnit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// The minimum distance of minor lines, in logical pixels, at the point that the camera looks at.
constexpr double kLeastPixels = 14;
/// How far a perspective shows the grid, in multiples of the distance of the point that the camera looks at.
constexpr double kReach = 10;
/// The radius of the mark at the origin.
constexpr float kOriginPixels = 5;
constexpr float kAxisColours[2][3] = {{0.80f, 0.24f, 0.22f}, {0.30f, 0.62f, 0.28f}};

constexpr const char* kLinesVertex = R"(
uniform mat4 view;       // from steps of the grid to the camera
uniform mat4 projection;
uniform vec3 disc;       // middle and radius, in steps
out vec2 place;

void main()
{
    place = disc.xy + (vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.0 - 1.0) * disc.z;
    gl_Position = projection * (view * vec4(place, 0.0, 1.0));
}
)";

/// Lines are as wide as they should be in pixels whatever the angle, and vanish before they come so close
/// that they would blur into patterns.
constexpr const char* kLinesFragment = R"(
in vec2 place;
uniform vec3 disc;
uniform float perMajor; // steps from one major line to the next
uniform vec2 axes;      // where the axes are
uniform float origin;   // radius of the mark at the origin, in logical pixels; 0 for none
uniform float pixel;    // pixels of the framebuffer for a logical one
uniform vec3 colour;
uniform vec3 axisColours[2];
out vec4 result;

vec2 lines(vec2 steps, vec2 pixelsOfStep, float width)
{
    vec2 away = abs(steps - round(steps)) * pixelsOfStep;
    vec2 apart = smoothstep(4.0, 11.0, pixelsOfStep / pixel);
    return clamp(width * pixel * 0.5 + 0.5 - away, 0.0, 1.0) * apart;
}

void main()
{
    vec2 perPixel = vec2(length(vec2(dFdx(place.x), dFdy(place.x))), length(vec2(dFdx(place.y), dFdy(place.y))));
    vec2 pixelsOfStep = 1.0 / max(perPixel, 1e-9);
    vec2 minor = lines(place, pixelsOfStep, 1.0) * 0.30;
    vec2 major = lines(place / perMajor, pixelsOfStep * perMajor, 1.15) * 0.62;
    vec2 axis = clamp(0.8 * pixel + 0.5 - abs(place - axes) * pixelsOfStep, 0.0, 1.0);
    float fade = 1.0 - smoothstep(0.3, 1.0, distance(place, disc.xy) / disc.z);
    float plain = max(max(minor.x, minor.y), max(major.x, major.y));
    // The line along an axis is where the other coordinate is that of the axis.
    vec3 seen = colour;
    float opacity = plain;
    seen = mix(seen, axisColours[0], axis.y);
    seen = mix(seen, axisColours[1], axis.x);
    opacity = max(opacity, max(axis.x, axis.y) * 0.85);
    float away = length((place - axes) * pixelsOfStep) / pixel;
    float ring = clamp(origin + 0.5 - away, 0.0, 1.0);
    seen = mix(seen, mix(colour, vec3(1.0), clamp(origin - 1.0 - away, 0.0, 1.0)), ring);
    opacity = max(opacity, ring);
    if (opacity * fade < 0.004)
        discard;
    result = vec4(seen, opacity * fade);
}
)";

double logicalPixel(const Frame& frame)
{
    return std::max(1.0, double(frame.target.lineWidth));
}

std::array<float, 3> onScreen(const Vs::Colour& colour)
{
    return {std::pow(colour.r, 1 / 2.2f), std::pow(colour.g, 1 / 2.2f), std::pow(colour.b, 1 / 2.2f)};
}

} // namespace

// Most sessions never show the grid, so its program is created on first use.
bool LayoutGrid::make(Vs::Status&)
{
    return true;
}

bool LayoutGrid::makeProgram()
{
    if (std::exchange(m_tried, true))
        return bool(m_lines);
    Vs::Status ignored;
    glGenVertexArrays(1, &m_noArray);
    return m_lines.make("grid", {kLinesVertex}, {kLinesFragment}, ignored);
}

void LayoutGrid::release()
{
    m_lines.release();
    m_numbers.release();
    glDeleteVertexArrays(1, &m_noArray);
}

bool LayoutGrid::isUnderGlass(const Frame& frame)
{
    // A drawing is made from the picture so far, which must not contain helpers.
    if (!frame.target.grid || !frame.showsGlass() || frame.params().nprEffect() != 0)
        return false;
    const GkVector3d up = frame.params().groundPlaneOrientation();
    const Vs::Scene::Projection& view = frame.projection;
    return view.perspective() ? frame.fragment.camera()->position().asVector().dotProduct(up) >= 0
                              : (view.view() * up).z >= 0;
}

void GridUnderGlass::draw(const Frame& frame)
{
    if (LayoutGrid::isUnderGlass(frame))
        m_grid.drawNow(frame);
}

void LayoutGrid::draw(const Frame& frame)
{
    if (!isUnderGlass(frame))
        drawNow(frame);
}

void LayoutGrid::drawNow(const Frame& frame)
{
    if (!frame.target.grid || !frame.showsModel() || !makeProgram())
        return;
    Plane plane;
    plane.up = frame.params().groundPlaneOrientation();
    groundAxes(plane.up, plane.axes[0], plane.axes[1]);
    const Vs::Scene::Camera& camera = *frame.fragment.camera();
    const GkVector3d target = camera.target().asVector();
    const GkVector3d foot = target - plane.up * target.dotProduct(plane.up);
    for (int i = 0; i < 2; ++i)
        plane.middle[i] = foot.dotProduct(plane.axes[i]);

    const Vs::Scene::Projection& view = frame.projection;
    const GkVector3d up = (view.view() * plane.up).normal();
    if (view.perspective()) {
        const double away = (camera.position().asVector() - foot).length();
        plane.reach = kReach * away;
        plane.minor = view.pixelSize(away);
    } else {
        // The part of the plane that is in view, which gets longer as the angle gets flatter.
        plane.minor = view.pixelSize(1);
        const double off = (target - foot).length();
        plane.reach =
            (1.5 * std::hypot(view.halfWidth(), view.halfHeight()) + off) / std::max(0.05, std::abs(up.z));
    }
    const Vs::LengthUnit& unit =
        frame.target.gridUnit ? *frame.target.gridUnit : Vs::LengthUnit::all().front();
    const double least = plane.minor * kLeastPixels * logicalPixel(frame) / unit.millimetres;
    if (!std::isnormal(least) || !std::isfinite(plane.reach))
        return;
    const GridScale scale(least);
    plane.minor = scale.minor() * unit.millimetres;
    plane.major = scale.major() * unit.millimetres;
    drawLines(frame, plane);
    if (frame.target.gridNumbers)
        drawNumbers(frame, plane, scale);
}

// Steps are counted from a major line near the middle, so that single precision suffices far from the origin.
void LayoutGrid::drawLines(const Frame& frame, const Plane& plane)
{
    double base[2];
    GkVector3d origin;
    for (int i = 0; i < 2; ++i) {
        base[i] = std::round(plane.middle[i] / plane.major) * plane.major;
        origin = origin + plane.axes[i] * base[i];
    }
    GkMatrix3d place;
    for (const auto& [column, direction] : {std::pair(0, plane.axes[0] * plane.minor),
                                            {1, plane.axes[1] * plane.minor},
                                            {2, plane.up},
                                            {3, origin}}) {
        place.entry[0][column] = direction.x;
        place.entry[1][column] = direction.y;
        place.entry[2][column] = direction.z;
    }
    m_lines.use();
    m_lines.setMatrix("view", (frame.projection.view() * place).entry);
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    m_lines.setMatrix("projection", clip);
    glUniform3f(m_lines.uniform("disc"), float((plane.middle[0] - base[0]) / plane.minor),
                float((plane.middle[1] - base[1]) / plane.minor), float(plane.reach / plane.minor));
    glUniform1f(m_lines.uniform("perMajor"), float(std::round(plane.major / plane.minor)));
    glUniform2f(m_lines.uniform("axes"), float(-base[0] / plane.minor), float(-base[1] / plane.minor));
    glUniform1f(m_lines.uniform("origin"), frame.target.gridOrigin ? kOriginPixels : 0);
    glUniform1f(m_lines.uniform("pixel"), float(logicalPixel(frame)));
    glUniform3fv(m_lines.uniform("axisColours"), 2, kAxisColours[0]);
    glUniform3fv(m_lines.uniform("colour"), 1, onScreen(frame.environment.gridColor()).data());
    glDepthMask(GL_FALSE);
    // The grid reaches beyond the bodies, which alone determine the clip planes.
    glEnable(GL_DEPTH_CLAMP);
    glEnable(GL_BLEND);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisable(GL_DEPTH_CLAMP);
    frame.drawIntoPicture();
}

void LayoutGrid::drawNumbers(const Frame& frame, const Plane& plane, const GridScale& scale)
{
    GridNumbers numbers(frame.projection, logicalPixel(frame));
    for (int i = 0; i < 2; ++i)
        numbers.addAxis(plane.axes[i], plane.middle[i], plane.middle[1 - i], plane.reach, plane.major, scale);
    m_vertices.clear();
    const Vs::Scene::Projection& view = frame.projection;
    const auto [red, green, blue] = onScreen(frame.environment.gridColor());
    for (const GridNumbers::Line& line : numbers.lines()) {
        const double away = view.perspective() ? line.ahead : 1.0;
        for (const GkPoint2d& end : {line.from, line.to})
            m_vertices.push_back(
                {{float((end.x / view.width() * 2 - 1) * view.halfWidth() * away),
                  float((end.y / view.height() * 2 - 1) * view.halfHeight() * away), float(-line.ahead)},
                 {red, green, blue, float(line.opacity)}});
    }
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    if (!m_numbers.begin(frame, clip, m_vertices))
        return;
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    m_numbers.draw(float(1.5 * logicalPixel(frame)));
    frame.drawIntoPicture();
}

} // namespace Rendra
