#include "Server/Scene/Rendra/HighlightPainter.h"

#include "Server/Scene/Rendra/CommonShaders.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// How far the glow reaches around a body, in logical pixels; the first part of it is a plain line.
constexpr float kGlowPixels = 5;
/// More lines than this help nobody to see what is selected.
constexpr size_t kMostVertices = 400000;

constexpr const char* kMaskVertex = R"(
layout(location = 7) in uint flags;
flat out float strength;

void main()
{
    gl_Position = projection * placed(position);
    strength = (flags & 2u) != 0u ? 1.0 : 0.5;
}
)";

constexpr const char* kMaskFragment = R"(
flat in float strength;
out float result;
void main()
{
    result = strength;
}
)";

/// Outside of what is highlighted, how near it is decides; rings of places around the pixel are asked.
constexpr const char* kOutlineFragment = R"(
uniform sampler2D mask;
uniform ivec2 shift; // from pixels of the framebuffer to those of the mask
uniform float reach; // in pixels
uniform vec3 pointed;
uniform vec3 selected;
out vec4 result;

void main()
{
    ivec2 here = ivec2(gl_FragCoord.xy) + shift;
    if (texelFetch(mask, here, 0).r > 0.0)
        discard;
    float found = 0.0, nearest = 2.0;
    for (int ring = 1; ring <= 4; ++ring) {
        float radius = reach * float(ring) / 4.0;
        for (int i = 0; i < 12; ++i) {
            float angle = (float(i) + 0.5 * float(ring & 1)) * 0.5235988;
            ivec2 place = here + ivec2(round(vec2(cos(angle), sin(angle)) * radius));
            float value = texelFetch(mask, place, 0).r;
            if (value > 0.0) {
                nearest = min(nearest, float(ring) / 4.0);
                found = max(found, value);
            }
        }
        if (found > 0.0)
            break;
    }
    if (found == 0.0)
        discard;
    float strength = nearest < 0.6 ? 0.95 : nearest < 0.8 ? 0.5 : 0.22;
    result = vec4(found > 0.75 ? selected : pointed, strength);
}
)";

constexpr const char* kLineVertex = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 colour;
uniform mat4 view;
uniform mat4 projection;
flat out vec4 line;

void main()
{
    gl_Position = projection * (view * vec4(position, 1.0));
    line = colour;
}
)";

constexpr const char* kLineFragment = R"(
flat in vec4 line;
uniform float opacity;
out vec4 result;

void main()
{
    result = vec4(line.rgb, line.a * opacity);
}
)";

/// The rectangle, in pixels of the framebuffer, that bounds what is highlighted; the whole part if that
/// cannot be told because something reaches behind the viewer.
Area boundsOf(const Frame& frame, int margin)
{
    double low[2] = {1e300, 1e300}, high[2] = {-1e300, -1e300};
    for (const InstanceStore::Lit& lit : frame.scene.instances.lit()) {
        const Batch::Box& box = lit.batch->boxes[lit.index];
        for (int corner = 0; corner < 8; ++corner) {
            GkPoint3d at = GkPoint3d() + frame.scene.list.origin();
            at.x += box.centre[0] + (corner & 1 ? box.half[0] : -box.half[0]);
            at.y += box.centre[1] + (corner & 2 ? box.half[1] : -box.half[1]);
            at.z += box.centre[2] + (corner & 4 ? box.half[2] : -box.half[2]);
            const GkPoint3d seen = frame.projection.worldToScreen(at);
            if (frame.projection.perspective() && seen.z <= 0)
                return frame.part;
            low[0] = std::min(low[0], seen.x);
            low[1] = std::min(low[1], seen.y);
            high[0] = std::max(high[0], seen.x);
            high[1] = std::max(high[1], seen.y);
        }
    }
    const auto pixel = [](double value) { return int(std::lround(std::clamp(value, -1e6, 1e6))); };
    const int x = frame.area.x + pixel(low[0]) - margin, y = frame.area.y + pixel(low[1]) - margin;
    return intersection(frame.part,
                        {x, y, pixel(high[0] - low[0]) + 2 * margin, pixel(high[1] - low[1]) + 2 * margin});
}

} // namespace

void HighlightPainter::draw(const Frame& frame)
{
    if (frame.scene.instances.lit().empty() || frame.params().visualStyle() == Vs::Scene::kHelpersOnly)
        return;
    if (frame.target.selectionEffect == kNormalEffect)
        drawOutline(frame);
    else if (frame.target.selectionEffect == kSimplifiedEffect)
        drawLines(frame);
}

bool HighlightPainter::makeOutline()
{
    if (!std::exchange(m_triedOutline, true)) {
        Vs::Status ignored; // the tint is left
        if (m_mask.make("mask", {kInstance, kMaskVertex}, {kMaskFragment}, ignored))
            m_outline.make("outline", {kWholeVertex}, {kOutlineFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return bool(m_outline);
}

void HighlightPainter::drawOutline(const Frame& frame)
{
    const float logical = std::max(1.0f, frame.target.lineWidth);
    const int margin = int(std::ceil(kGlowPixels * logical)) + 1;
    const Area touched = boundsOf(frame, margin);
    if (touched.width == 0 || touched.height == 0 || !makeOutline())
        return;
    const int width = frame.part.width + 2 * margin, height = frame.part.height + 2 * margin;
    if (width != m_width || height != m_height) {
        m_width = width;
        m_height = height;
        glDeleteTextures(1, &m_texture);
        glDeleteFramebuffers(1, &m_framebuffer);
        glGenTextures(1, &m_texture);
        glBindTexture(GL_TEXTURE_2D, m_texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, width, height, 0, GL_RED, GL_UNSIGNED_BYTE, nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glGenFramebuffers(1, &m_framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_texture, 0);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, width, height);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_SCISSOR_TEST);
    glScissor(touched.x - frame.part.x, touched.y - frame.part.y, touched.width + 2 * margin,
              touched.height + 2 * margin);
    glClear(GL_COLOR_BUFFER_BIT);
    frame.setView(m_mask, {frame.part.x - margin, frame.part.y - margin, width, height});
    for (const InstanceStore::Lit& lit : frame.scene.instances.lit()) {
        const GlMesh& mesh = frame.meshes.get(lit.batch->mesh, frame.statistics.uploadedMeshes);
        glBindVertexArray(mesh.faceArray);
        InstanceStore::bind(frame.scene.instances.rangeOf(lit));
        glDrawElementsInstanced(GL_TRIANGLES, mesh.indexCount, mesh.indexType, nullptr, 1);
        ++frame.statistics.drawCalls;
    }

    frame.drawIntoPicture();
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    glScissor(touched.x - frame.tile.x, touched.y - frame.tile.y, touched.width, touched.height);
    m_outline.use();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    glUniform1i(m_outline.uniform("mask"), 0);
    glUniform2i(m_outline.uniform("shift"), frame.tile.x - frame.part.x + margin,
                frame.tile.y - frame.part.y + margin);
    glUniform1f(m_outline.uniform("reach"), kGlowPixels * logical);
    const HighlightColours colours(frame.environment);
    glUniform3fv(m_outline.uniform("pointed"), 1, colours.pointed);
    glUniform3fv(m_outline.uniform("selected"), 1, colours.selected);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_SCISSOR_TEST);
    frame.drawIntoPicture();
}

bool HighlightPainter::makeLines()
{
    if (std::exchange(m_triedLines, true))
        return bool(m_lines);
    Vs::Status ignored;
    if (!m_lines.make("highlight lines", {kLineVertex}, {kLineFragment}, ignored))
        return false;
    m_stream.make({3, 4});
    return true;
}

void HighlightPainter::drawLines(const Frame& frame)
{
    if (!makeLines())
        return;
    m_vertices.clear();
    const HighlightColours colours(frame.environment);
    for (const InstanceStore::Lit& lit : frame.scene.instances.lit()) {
        const Instance& instance = lit.batch->instances[lit.index];
        const float* own = instance.flags & Instance::kSelected ? colours.selected : colours.pointed;
        const float colour[4] = {own[0], own[1], own[2], 1};
        gatherBox(*lit.batch->mesh, instance, colour);
        if (m_vertices.size() < kMostVertices)
            gatherEdges(*lit.batch->mesh, instance, colour);
        if (m_vertices.size() >= kMostVertices)
            break;
    }
    frame.setView(m_lines);
    m_stream.fill(m_vertices);
    glLineWidth(frame.lineWidth(2 * frame.target.lineWidth));
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    // The box stands around the body, and so beyond what the clip planes were set for.
    glEnable(GL_DEPTH_CLAMP);
    for (const auto& [function, opacity] : {std::pair(GL_GREATER, 0.3f), std::pair(GL_LEQUAL, 1.0f)}) {
        glDepthFunc(GLenum(function));
        glUniform1f(m_lines.uniform("opacity"), opacity);
        glDrawArrays(GL_LINES, 0, GLsizei(m_vertices.size()));
        ++frame.statistics.drawCalls;
    }
    glDisable(GL_DEPTH_CLAMP);
    frame.drawIntoPicture();
}

// The corners of a box around the body that turns with it, marked by a third of each side.
void HighlightPainter::gatherBox(const Vs::BodyMesh& mesh, const Instance& instance, const float (&colour)[4])
{
    const GkPoint3d middle = mesh.bounds.centre();
    const GkVector3d half = (mesh.bounds.high() - mesh.bounds.low()) * 0.52;
    const auto put = [&](const GkVector3d& away) {
        const double p[3] = {middle.x + away.x * half.x, middle.y + away.y * half.y,
                             middle.z + away.z * half.z};
        Vertex vertex{};
        for (int row = 0; row < 3; ++row)
            vertex.position[row] = float(instance.rows[row][0] * p[0] + instance.rows[row][1] * p[1] +
                                         instance.rows[row][2] * p[2] + instance.rows[row][3]);
        std::copy(std::begin(colour), std::end(colour), vertex.colour);
        m_vertices.push_back(vertex);
    };
    for (int corner = 0; corner < 8; ++corner) {
        const GkVector3d at(corner & 1 ? 1 : -1, corner & 2 ? 1 : -1, corner & 4 ? 1 : -1);
        for (const GkVector3d& along :
             {GkVector3d(at.x / 3, at.y, at.z), {at.x, at.y / 3, at.z}, {at.x, at.y, at.z / 3}}) {
            put(at);
            put(along);
        }
    }
}

void HighlightPainter::gatherEdges(const Vs::BodyMesh& mesh, const Instance& instance,
                                   const float (&colour)[4])
{
    const auto put = [&](uint32_t point) {
        const float* p = &mesh.edgePoints[3 * size_t(point)];
        Vertex vertex{};
        for (int row = 0; row < 3; ++row)
            vertex.position[row] = instance.rows[row][0] * p[0] + instance.rows[row][1] * p[1] +
                                   instance.rows[row][2] * p[2] + instance.rows[row][3];
        std::copy(std::begin(colour), std::end(colour), vertex.colour);
        m_vertices.push_back(vertex);
    };
    for (size_t i = 0; i + 1 < mesh.edgeStarts.size() && m_vertices.size() < kMostVertices; ++i)
        for (uint32_t point = mesh.edgeStarts[i]; point + 1 < mesh.edgeStarts[i + 1]; ++point) {
            put(point);
            put(point + 1);
        }
}

void HighlightPainter::release()
{
    for (Program* program : {&m_mask, &m_outline, &m_lines})
        program->release();
    glDeleteTextures(1, &m_texture);
    glDeleteFramebuffers(1, &m_framebuffer);
    glDeleteVertexArrays(1, &m_noArray);
    m_stream.release();
}

} // namespace Rendra
