#include "Server/Scene/Rendra/EdgePainter.h"

#include "Server/Scene/Rendra/BufferOffset.h"
#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/EdgeShaders.h"

#include <algorithm>
#include <utility>

namespace Rendra {

namespace {

/// The opacity of edges across which faces continue smoothly, as a fraction of that of other edges.
constexpr float kTangentOpacity = 0.28f;
constexpr uint64_t kManySegments = 100000;
/// Bodies fewer logical pixels across have no outlines; on faces, whose ends are visible by themselves, even
/// somewhat larger ones have none.
constexpr float kLeastPixels = 9, kLeastPixelsOnFaces = 40;

} // namespace

bool EdgePainter::make(Vs::Status& status)
{
    return m_edges.make("edges", {kInstance, Shaders::kLineOfBody, Shaders::kEdgeVertex},
                        {Shaders::kEdgeFragment}, status, {Shaders::kLineGeometry});
}

// With that many lines, software rendering is faster with the driver's own lines.
const Program& EdgePainter::edgeProgram(const Frame& frame, const Look& look)
{
    if (!frame.software || frame.target.samples > 1 || frame.target.pixelScale > 1)
        return m_edges;
    uint64_t segments = 0;
    for (size_t i = 0; i < frame.scene.list.batches().size(); ++i)
        if (isDrawn(frame, i, look))
            segments += frame.scene.list.batches()[i]->mesh->edgePoints.size() / 3 *
                        uint64_t(frame.scene.instances.ranges()[i].count);
    if (segments < kManySegments)
        return m_edges;
    if (!std::exchange(m_triedPlain, true)) {
        Vs::Status ignored;
        m_plain.make("many edges", {"#define PLAIN\n", kInstance, Shaders::kLineOfBody, Shaders::kEdgeVertex},
                     {"#define PLAIN\n", Shaders::kEdgeFragment}, ignored);
    }
    glLineWidth(frame.lineWidth(frame.target.lineWidth));
    return m_plain ? m_plain : m_edges;
}

// Lines of bodies that small would be too faint to see.
bool EdgePainter::isDrawn(const Frame& frame, size_t index, const Look& look)
{
    const Batch& batch = *frame.scene.list.batches()[index];
    const InstanceStore::Range& range = frame.scene.instances.ranges()[index];
    return range.count > 0 && !batch.mesh->edgePoints.empty() && (!look.ofGlass || batch.transparent) &&
           range.pixels >= kLeastPixels * std::max(1.0f, frame.target.lineWidth);
}

bool EdgePainter::linesAll(const Frame& frame)
{
    const float least = kLeastPixelsOnFaces * std::max(1.0f, frame.target.lineWidth);
    for (size_t i = 0; i < frame.scene.list.batches().size(); ++i) {
        const InstanceStore::Range& range = frame.scene.instances.ranges()[i];
        if (range.count > 0 &&
            (range.leastPixels < least || frame.scene.list.batches()[i]->mesh->edgePoints.empty()))
            return false;
    }
    return true;
}

void EdgePainter::release()
{
    m_edges.release();
    m_plain.release();
    m_outlines.release();
    m_stream.release();
}

void EdgePainter::draw(const Frame& frame, const Look& look, bool withOutlines)
{
    drawEdges(frame, look);
    if (withOutlines)
        drawOutlines(frame, look);
}

void EdgePainter::setLine(const Program& program, const Frame& frame, const Look& look)
{
    frame.setView(program);
    frame.setHighlights(program);
    glUniform4fv(program.uniform("edgeColour"), 1, look.colour);
    glUniform1f(program.uniform("lineWidth"), frame.target.lineWidth);
    glUniform2f(program.uniform("pixels"), float(frame.part.width) / 2, float(frame.part.height) / 2);
}

void EdgePainter::drawEdges(const Frame& frame, const Look& look)
{
    const Program& program = edgeProgram(frame, look);
    setLine(program, frame, look);
    glUniform1f(program.uniform("dashLength"), look.dashPixels);
    glUniform1i(program.uniform("onFaces"), look.onFaces);
    const KeptScene& scene = frame.scene;
    for (size_t i = 0; i < scene.list.batches().size(); ++i) {
        const Batch& batch = *scene.list.batches()[i];
        const InstanceStore::Range& range = scene.instances.ranges()[i];
        if (!isDrawn(frame, i, look))
            continue;
        const GlMesh& mesh = frame.meshes.get(frame.shownOf(batch), frame.statistics.uploadedMeshes);
        if (mesh.edgeIndexCount == 0)
            continue;
        const GkPoint3d middle = batch.mesh->bounds.centre();
        glUniform4f(program.uniform("middle"), float(middle.x), float(middle.y), float(middle.z),
                    float(batch.mesh->bounds.diagonal()));
        glUniform1f(program.uniform("pixelsOfUnit"),
                    float(1 / frame.projection.pixelSize(1)) / std::max(1.0f, frame.target.lineWidth));
        glBindVertexArray(mesh.edgeArray);
        InstanceStore::bind(range);
        const auto drawRun = [&](GLsizei first, GLsizei end) {
            const size_t size = mesh.edgeIndexType == GL_UNSIGNED_SHORT ? sizeof(uint16_t) : sizeof(uint32_t);
            if (first == end)
                return;
            glDrawElementsInstanced(GL_LINES, end - first, mesh.edgeIndexType,
                                    bufferOffset(size_t(first) * size), range.count);
            ++frame.statistics.drawCalls;
        };
        const int tangent = frame.target.tangentEdges;
        drawRun(0, tangent == kFullTangentEdges ? mesh.edgeIndexCount : mesh.sharpIndexCount);
        if (tangent != kFaintTangentEdges || mesh.sharpIndexCount == mesh.edgeIndexCount)
            continue;
        glUniform4f(program.uniform("edgeColour"), look.colour[0], look.colour[1], look.colour[2],
                    look.colour[3] * kTangentOpacity);
        drawRun(mesh.sharpIndexCount, mesh.edgeIndexCount);
        glUniform4fv(program.uniform("edgeColour"), 1, look.colour);
    }
}

void EdgePainter::drawOutlines(const Frame& frame, const Look& look)
{
    if (!std::exchange(m_triedOutlines, true)) {
        Vs::Status ignored;
        m_outlines.make("outlines", {Shaders::kOutlineVertex}, {Shaders::kEdgeFragment}, ignored,
                        {Shaders::kLineGeometry});
        m_stream.make({4, 4});
    }
    if (!m_outlines)
        return;
    m_vertices.clear();
    const float logical = std::max(1.0f, frame.target.lineWidth);
    const float least = (look.onFaces ? kLeastPixelsOnFaces : kLeastPixels) * logical;
    for (size_t i = 0; i < frame.scene.list.batches().size(); ++i) {
        const Batch& batch = *frame.scene.list.batches()[i];
        const InstanceStore::Range& range = frame.scene.instances.ranges()[i];
        if (range.count > 0 && range.pixels >= least && (!look.ofGlass || batch.transparent))
            m_outlineStore.gather(batch, frame.shownOf(batch), frame.projection, frame.scene.list.origin(),
                                  {least, logical}, m_vertices);
    }
    if (m_vertices.empty())
        return;
    setLine(m_outlines, frame, look);
    glUniform1f(m_outlines.uniform("dashLength"), look.dashPixels * logical);
    m_stream.fill(m_vertices);
    glDrawArrays(GL_LINES, 0, GLsizei(m_vertices.size()));
    ++frame.statistics.drawCalls;
}

} // namespace Rendra
