#include "Server/Scene/Rendra/PartPainter.h"

#include "Server/Body/PartsMesh.h"
#include "Server/Scene/Rendra/BufferOffset.h"
#include "Server/Scene/Rendra/CommonShaders.h"

#include <algorithm>
#include <utility>

namespace Rendra {

using Graphics::Highlight;
using Graphics::LitPart;
using Graphics::Part;

namespace {

/// How much the highlight covers a lit face's own colour, and the opacity of an edge or vertex through what
/// hides it.
constexpr float kPointedOpacity = 0.3f, kSelectedOpacity = 0.5f, kHiddenOpacity = 0.25f;
/// In logical pixels.
constexpr float kEdgeWidth = 3, kVertexSize = 9;

constexpr const char* kFaceVertex = R"(
void main()
{
    gl_Position = projection * placed(position);
}
)";

constexpr const char* kFaceFragment = R"(
uniform vec4 tint;
out vec4 result;
void main()
{
    result = tint;
}
)";

constexpr const char* kMarkVertex = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 colour;
uniform mat4 toClip;
flat out vec3 mark;

void main()
{
    gl_Position = toClip * vec4(position, 1.0);
    mark = colour.rgb;
}
)";

constexpr const char* kMarkFragment = R"(
flat in vec3 mark;
uniform float opacity;
out vec4 result;

void main()
{
    float cover = 1.0 - smoothstep(0.8, 1.0, 2.0 * length(gl_PointCoord - 0.5));
    result = vec4(mark, opacity * cover);
}
)";

const float* colourOf(const HighlightColours& colours, Highlight highlight)
{
    return highlight == Highlight::Selected ? colours.selected : colours.pointed;
}

std::shared_ptr<const Vs::BodyMesh> meshOf(const Frame& frame, const PartlyLit& lit)
{
    return Vs::partsMesh(frame.shownOf(*lit.slot->batch));
}

} // namespace

void PartPainter::draw(const Frame& frame)
{
    const auto& lit = frame.scene.list.partlyLit();
    if (lit.empty() || frame.target.selectionEffect == kNoEffect ||
        frame.params().visualStyle() == Vs::Scene::kHelpersOnly || !makePrograms())
        return;
    drawFaces(frame);
    const HighlightColours colours(frame.environment);
    for (const Part part : {Part::Edge, Part::Vertex}) {
        m_vertices.clear();
        for (const PartlyLit& each : lit)
            if (each.slot->batch)
                gather(frame, each, part, colours);
        if (!m_vertices.empty())
            drawGathered(frame, part);
    }
}

bool PartPainter::makePrograms()
{
    if (std::exchange(m_tried, true))
        return bool(m_marks);
    Vs::Status ignored;
    if (!m_faces.make("lit faces", {kInstance, kFaceVertex}, {kFaceFragment}, ignored) ||
        !m_marks.make("lit parts", {kMarkVertex}, {kMarkFragment}, ignored))
        return false;
    m_stream.make({3, 4});
    return true;
}

void PartPainter::drawFaces(const Frame& frame)
{
    frame.setView(m_faces);
    const HighlightColours colours(frame.environment);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    const auto& batches = frame.scene.list.batches();
    for (const PartlyLit& lit : frame.scene.list.partlyLit()) {
        const auto batch = std::find_if(batches.begin(), batches.end(),
                                        [&](const auto& each) { return each.get() == lit.slot->batch; });
        if (batch == batches.end())
            continue;
        const std::shared_ptr<const Vs::BodyMesh> parts = meshOf(frame, lit);
        const Vs::BodyMesh& body = *parts;
        const GlMesh& mesh = frame.meshes.get(parts, frame.statistics.uploadedMeshes);
        const size_t indexSize = mesh.indexType == GL_UNSIGNED_SHORT ? sizeof(uint16_t) : sizeof(uint32_t);
        glBindVertexArray(mesh.faceArray);
        InstanceStore::bind(
            frame.scene.instances.rangeOf({batch->get(), size_t(batch - batches.begin()), lit.slot->index}));
        for (const LitPart& part : lit.parts) {
            if (part.part != Part::Face || part.index >= body.faces.size())
                continue;
            const Vs::BodyMesh::Face& face = body.faces[part.index];
            const float* colour = colourOf(colours, part.highlight);
            glUniform4f(m_faces.uniform("tint"), colour[0], colour[1], colour[2],
                        part.highlight == Highlight::Selected ? kSelectedOpacity : kPointedOpacity);
            glDrawElementsInstanced(GL_TRIANGLES, GLsizei(face.triangleCount * 3), mesh.indexType,
                                    bufferOffset(size_t(face.firstTriangle) * 3 * indexSize), 1);
            ++frame.statistics.drawCalls;
        }
    }
    frame.drawIntoPicture();
}

void PartPainter::gather(const Frame& frame, const PartlyLit& lit, Part wanted,
                         const HighlightColours& colours)
{
    const std::shared_ptr<const Vs::BodyMesh> parts = meshOf(frame, lit);
    const Vs::BodyMesh& mesh = *parts;
    const Instance& instance = lit.slot->batch->instances[lit.slot->index];
    const auto put = [&](const float* p, const float* colour) {
        LineStrips::Vertex vertex{};
        for (int row = 0; row < 3; ++row)
            vertex.position[row] = instance.rows[row][0] * p[0] + instance.rows[row][1] * p[1] +
                                   instance.rows[row][2] * p[2] + instance.rows[row][3];
        std::copy(colour, colour + 3, vertex.colour);
        vertex.colour[3] = 1;
        m_vertices.push_back(vertex);
    };
    for (const LitPart& part : lit.parts) {
        const float* colour = colourOf(colours, part.highlight);
        if (part.part != wanted)
            continue;
        if (wanted == Part::Vertex && size_t(part.index) * 3 < mesh.vertexPoints.size())
            put(&mesh.vertexPoints[3 * size_t(part.index)], colour);
        if (wanted == Part::Edge && size_t(part.index) + 1 < mesh.edgeStarts.size())
            for (size_t i = mesh.edgeStarts[part.index]; i + 1 < mesh.edgeStarts[part.index + 1]; ++i) {
                put(&mesh.edgePoints[3 * i], colour);
                put(&mesh.edgePoints[3 * i + 3], colour);
            }
    }
}

void PartPainter::drawGathered(const Frame& frame, Part part)
{
    double toClip[4][4];
    frame.sceneToClip(toClip);
    // Marks come this part of the depth to the viewer, so that they stand before their faces.
    for (int i = 0; i < 4; ++i)
        toClip[2][i] -= 1e-5 * toClip[3][i];
    const float logical = std::max(1.0f, frame.target.lineWidth);
    if (part == Part::Vertex) {
        m_marks.use();
        m_marks.setMatrix("toClip", toClip);
        m_stream.fill(m_vertices);
        glPointSize(kVertexSize * logical);
    } else if (!m_strips.begin(frame, toClip, m_vertices)) {
        return;
    }
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    for (const auto& [function, opacity] :
         {std::pair(GL_GREATER, kHiddenOpacity), std::pair(GL_LEQUAL, 1.0f)}) {
        glDepthFunc(GLenum(function));
        if (part == Part::Edge) {
            m_strips.draw(kEdgeWidth * logical, {1, 1, 1, opacity});
        } else {
            glUniform1f(m_marks.uniform("opacity"), opacity);
            glDrawArrays(GL_POINTS, 0, GLsizei(m_vertices.size()));
        }
        ++frame.statistics.drawCalls;
    }
    frame.drawIntoPicture();
}

void PartPainter::release()
{
    m_faces.release();
    m_marks.release();
    m_stream.release();
    m_strips.release();
}

} // namespace Rendra
