#include "Server/Scene/Rendra/HighlightPainter.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/HighlightShaders.h"
#include "Server/Scene/Rendra/ScreenBounds.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// How far the glow reaches around a body, in logical pixels; the first part of it is a plain line.
constexpr float kGlowPixels = 5;
/// The opacity of the line where something hides the selection: enough to find it.
constexpr float kHiddenSelected = 0.25f;
/// The mask is first examined in blocks of this many pixels in each direction.
constexpr int kBlockLevel = 3, kBlock = 1 << kBlockLevel;
/// More lines than this don't help anybody see what is selected.
constexpr size_t kMostVertices = 400000;

int wholeBlocks(int pixels)
{
    return (pixels + kBlock - 1) / kBlock * kBlock;
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
        if (m_mask.make("mask", {kInstance, Shaders::kMaskVertex}, {Shaders::kMaskFragment}, ignored))
            m_outline.make("outline", {Shaders::kOutlineVertex}, {Shaders::kOutlineFragment}, ignored);
        m_squares.make({2});
    }
    return bool(m_outline);
}

void HighlightPainter::makeMask(int width, int height)
{
    m_width = width;
    m_height = height;
    const GLuint old[] = {m_texture, m_depths};
    glDeleteTextures(2, old);
    glDeleteFramebuffers(1, &m_framebuffer);
    for (GLuint* texture : {&m_texture, &m_depths}) {
        glGenTextures(1, texture);
        glBindTexture(GL_TEXTURE_2D, *texture);
        const bool isDepth = texture == &m_depths;
        glTexImage2D(GL_TEXTURE_2D, 0, isDepth ? GL_DEPTH_COMPONENT24 : GL_RG8, width, height, 0,
                     isDepth ? GL_DEPTH_COMPONENT : GL_RG, isDepth ? GL_UNSIGNED_INT : GL_UNSIGNED_BYTE,
                     nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, isDepth ? 0 : kBlockLevel);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                        isDepth ? GL_NEAREST : GL_NEAREST_MIPMAP_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_texture, 0);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, m_depths, 0);
}

void HighlightPainter::drawOutline(const Frame& frame)
{
    const float logical = std::max(1.0f, frame.target.lineWidth);
    const int margin = int(std::ceil(kGlowPixels * logical)) + 1;
    ScreenBounds bounds(frame);
    for (const InstanceStore::Lit& lit : frame.scene.instances.lit())
        bounds.add(lit.batch->boxes[lit.index]);
    const Area touched = bounds.area(margin);
    if (touched.width == 0 || touched.height == 0 || !makeOutline())
        return;
    const int width = wholeBlocks(frame.part.width + 2 * margin);
    const int height = wholeBlocks(frame.part.height + 2 * margin);
    if (width != m_width || height != m_height)
        makeMask(width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, width, height);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glEnable(GL_SCISSOR_TEST);
    glScissor(touched.x - frame.part.x, touched.y - frame.part.y, touched.width + 2 * margin,
              touched.height + 2 * margin);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    frame.setView(m_mask, {frame.part.x - margin, frame.part.y - margin, width, height});
    bool isAnySelected = false;
    for (const InstanceStore::Lit& lit : frame.scene.instances.lit()) {
        isAnySelected = isAnySelected || lit.batch->instances[lit.index].flags & Instance::kSelected;
        const GlMesh& mesh = frame.meshes.get(frame.shownOf(*lit.batch), frame.statistics.uploadedMeshes);
        glBindVertexArray(mesh.faceArray);
        InstanceStore::bind(frame.scene.instances.rangeOf(lit));
        glDrawElementsInstanced(GL_TRIANGLES, mesh.indexCount, mesh.indexType, nullptr, 1);
        ++frame.statistics.drawCalls;
    }

    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    glGenerateMipmap(GL_TEXTURE_2D);
    gatherCorners({touched.x - frame.part.x, touched.y - frame.part.y, touched.width + 2 * margin,
                   touched.height + 2 * margin},
                  int(std::ceil(kGlowPixels * logical / kBlock)));

    frame.drawIntoPicture();
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glScissor(touched.x - frame.tile.x, touched.y - frame.tile.y, touched.width, touched.height);
    m_outline.use();
    glUniform1i(m_outline.uniform("mask"), 0);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, m_depths);
    glUniform1i(m_outline.uniform("depths"), 1);
    glUniform2i(m_outline.uniform("shift"), frame.tile.x - frame.part.x + margin,
                frame.tile.y - frame.part.y + margin);
    glUniform1f(m_outline.uniform("reach"), kGlowPixels * logical);
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    glUniform2f(m_outline.uniform("lens"), float(clip[2][2]), float(clip[2][3]));
    glUniform1i(m_outline.uniform("perspective"), frame.projection.perspective());
    glUniform1f(m_outline.uniform("pixel"), float(frame.projection.pixelSize(1)));
    const HighlightColours colours(frame.environment);
    glUniform3fv(m_outline.uniform("pointed"), 1, colours.pointed);
    glUniform3fv(m_outline.uniform("selected"), 1, colours.selected);
    glUniform1f(m_outline.uniform("margin"), float(margin));
    glUniform2f(m_outline.uniform("size"), float(frame.part.width), float(frame.part.height));
    glUniform1i(m_outline.uniform("rings"), isAnySelected ? 4 : 2);
    m_squares.fill(m_corners);
    for (const bool isHidden : {true, false}) {
        if (isHidden && !isAnySelected)
            continue;
        glDepthFunc(isHidden ? GL_GREATER : GL_LEQUAL);
        glUniform2f(m_outline.uniform("strengths"), isHidden ? 0.0f : 1.0f, isHidden ? kHiddenSelected : 1);
        glDrawArrays(GL_TRIANGLES, 0, GLsizei(m_corners.size() / 2));
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_SCISSOR_TEST);
    frame.drawIntoPicture();
}

// Most blocks are empty like all around them, or full, and cost nothing then.
void HighlightPainter::gatherCorners(const Area& touched, int around)
{
    const int columns = m_width / kBlock, rows = m_height / kBlock;
    m_blocks.resize(size_t(columns) * size_t(rows) * 2);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, kBlockLevel, GL_RG, GL_UNSIGNED_BYTE, m_blocks.data());
    const auto hasOutline = [&](int column, int row) {
        bool isEmpty = true, isFull = true;
        for (int y = std::max(0, row - around); y <= std::min(rows - 1, row + around); ++y)
            for (int x = std::max(0, column - around); x <= std::min(columns - 1, column + around); ++x) {
                const uint8_t filled = m_blocks[2 * (size_t(y) * size_t(columns) + size_t(x)) + 1];
                isEmpty = isEmpty && filled == 0;
                isFull = isFull && filled == 255;
            }
        return !isEmpty && !isFull;
    };
    m_corners.clear();
    for (int row = touched.y / kBlock; row < rows && row * kBlock < touched.y + touched.height; ++row)
        for (int column = touched.x / kBlock; column < columns && column * kBlock < touched.x + touched.width;
             ++column)
            if (hasOutline(column, row)) {
                const auto left = float(column * kBlock), bottom = float(row * kBlock);
                const float right = left + kBlock, top = bottom + kBlock;
                m_corners.insert(m_corners.end(), {left, bottom, right, bottom, right, top, left, bottom,
                                                   right, top, left, top});
            }
}

void HighlightPainter::drawLines(const Frame& frame)
{
    m_vertices.clear();
    const HighlightColours colours(frame.environment);
    for (const InstanceStore::Lit& lit : frame.scene.instances.lit()) {
        const Instance& instance = lit.batch->instances[lit.index];
        const float* own = instance.flags & Instance::kSelected ? colours.selected : colours.pointed;
        const float colour[4] = {own[0], own[1], own[2], 1};
        gatherBox(*lit.batch->mesh, instance, colour);
        if (m_vertices.size() < kMostVertices)
            gatherEdges(*frame.shownOf(*lit.batch), instance, colour);
        if (m_vertices.size() >= kMostVertices)
            break;
    }
    double toClip[4][4];
    frame.sceneToClip(toClip);
    if (!m_strips.begin(frame, toClip, m_vertices))
        return;
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    for (const auto& [function, opacity] : {std::pair(GL_GREATER, 0.3f), std::pair(GL_LEQUAL, 1.0f)}) {
        glDepthFunc(GLenum(function));
        m_strips.draw(2 * frame.target.lineWidth, {1, 1, 1, opacity});
        ++frame.statistics.drawCalls;
    }
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
        LineStrips::Vertex vertex{};
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
        LineStrips::Vertex vertex{};
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
    for (Program* program : {&m_mask, &m_outline})
        program->release();
    glDeleteTextures(1, &m_texture);
    glDeleteTextures(1, &m_depths);
    glDeleteFramebuffers(1, &m_framebuffer);
    m_squares.release();
    m_strips.release();
}

} // namespace Rendra
