#include "Server/Scene/Rendra/BodyPainter.h"

#include "Server/Scene/Rendra/Shaders.h"

#include <algorithm>

namespace Rendra {

namespace {

/// How far bodies keep the light from each other, as a part of the scene's size.
constexpr double kOcclusionReach = 0.05;

constexpr float kEdgeColour[4] = {0.10f, 0.115f, 0.14f, 0.88f};
constexpr float kHiddenEdgeColour[4] = {0.30f, 0.34f, 0.40f, 0.28f};

/// What a visual style draws.
struct Style
{
    bool faces;       ///< Lit faces.
    bool depthOnly;   ///< Faces that are not seen, but hide what is behind them.
    bool edges;       ///< Edges that nothing hides.
    bool hiddenEdges; ///< The others, faintly.
};

Style styleOf(int visualStyle)
{
    switch (visualStyle) {
    case Vs::Scene::kShaded:
    case Vs::Scene::kRealistic:
        return {true, false, false, false};
    case Vs::Scene::kShadedWithHiddenEdges:
        return {true, false, true, true};
    case Vs::Scene::kWireframe:
        return {false, false, true, false};
    case Vs::Scene::kWireframeWithHiddenEdges:
        return {false, true, true, true};
    case Vs::Scene::kWireframeWithVisibleEdges:
        return {false, true, true, false};
    case Vs::Scene::kHelpersOnly:
        return {false, false, false, false};
    default:
        return {true, false, true, false};
    }
}

/// Where the depths for a part of the picture are drawn: its lower left corner in pixels of the framebuffer,
/// but its size in pixels of the picture.
Area occlusionArea(const Area& part, int pixelScale)
{
    const auto length = [&](int pixels) {
        return (pixels + pixelScale - 1) / pixelScale + 2 * Occlusion::kMargin;
    };
    const int margin = Occlusion::kMargin * pixelScale;
    return {part.x - margin, part.y - margin, length(part.width), length(part.height)};
}

} // namespace

bool BodyPainter::make(Vs::Status& status)
{
    return m_faces.make("faces", Shaders::kFaceVertex, Shaders::kFaceFragment, status) &&
           m_edges.make("edges", Shaders::kEdgeVertex, Shaders::kEdgeFragment, status);
}

void BodyPainter::release()
{
    m_faces.release();
    m_edges.release();
    m_occlusion.release();
}

void BodyPainter::draw(const Frame& frame)
{
    if (frame.scene.list.instances() == 0)
        return;
    const Style style = styleOf(frame.params().visualStyle());
    const double size = frame.fragment.viewFragmentNode()->boundingBox().diagonal();
    const bool occluded = frame.target.effects && style.faces && frame.params().ambientOcclusionEnabled() &&
                          findOcclusion(frame, size * kOcclusionReach);
    frame.drawIntoPicture();
    setLight(frame, occluded);
    if (style.faces || style.depthOnly) {
        // Faces give way to the edges that lie in them.
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0f, 1.0f);
        if (style.depthOnly)
            glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        frame.drawFaces(false);
        if (style.depthOnly)
            frame.drawFaces(true);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glDisable(GL_POLYGON_OFFSET_FILL);
    }

    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    if (style.edges || style.hiddenEdges) {
        frame.setView(m_edges);
        if (style.hiddenEdges) {
            glDepthFunc(GL_GREATER);
            drawEdges(frame, kHiddenEdgeColour);
            glDepthFunc(GL_LEQUAL);
        }
        if (style.edges)
            drawEdges(frame, kEdgeColour);
    }
    if (style.faces) {
        m_faces.use();
        frame.drawFaces(true);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

bool BodyPainter::findOcclusion(const Frame& frame, double radius)
{
    const int scale = frame.target.pixelScale;
    const Area depths = occlusionArea(frame.part, scale);
    if (!m_occlusion.begin(depths.width, depths.height))
        return false;
    const Area reach{depths.x, depths.y, depths.width * scale, depths.height * scale};
    frame.setView(m_occlusion.depthProgram(), reach);
    frame.drawFaces(false);
    const Area& area = frame.area;
    const auto partOf = [](int at, int from, int length) { return double(at - from) / length; };
    m_occlusion.finish(frame.projection, partOf(reach.x, area.x, area.width),
                       partOf(reach.y, area.y, area.height),
                       partOf(reach.x + reach.width, area.x, area.width),
                       partOf(reach.y + reach.height, area.y, area.height), radius);
    return true;
}

void BodyPainter::setLight(const Frame& frame, bool occluded)
{
    frame.setView(m_faces);
    glUniform1i(m_faces.uniform("occluded"), occluded);
    if (occluded) {
        const int scale = frame.target.pixelScale;
        const Area depths = occlusionArea(frame.part, scale);
        const float perX = 1.0f / float(depths.width * scale);
        const float perY = 1.0f / float(depths.height * scale);
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, m_occlusion.texture());
        glUniform1i(m_faces.uniform("occlusion"), 0);
        glUniform4f(m_faces.uniform("occlusionPlace"), perX, perY, float(frame.tile.x - depths.x) * perX,
                    float(frame.tile.y - depths.y) * perY);
    }
    const GkVector3d up = (frame.projection.view() * frame.params().groundPlaneOrientation()).normal();
    glUniform3f(m_faces.uniform("up"), float(up.x), float(up.y), float(up.z));
}

void BodyPainter::drawEdges(const Frame& frame, const float (&colour)[4])
{
    glLineWidth(frame.lineWidth(frame.target.lineWidth));
    glUniform4fv(m_edges.uniform("edgeColour"), 1, colour);
    const GLint pixelsOfBody = m_edges.uniform("pixelsOfBody");
    const KeptScene& scene = frame.scene;
    for (size_t i = 0; i < scene.list.batches().size(); ++i) {
        const Batch& batch = *scene.list.batches()[i];
        const InstanceStore::Range& range = scene.instances.ranges()[i];
        if (range.count == 0 || batch.mesh->edgePoints.empty())
            continue;
        const GlMesh& mesh = frame.meshes.get(batch.mesh, frame.statistics.uploadedMeshes);
        if (mesh.edgeIndexCount == 0)
            continue;
        glUniform1f(pixelsOfBody, float(batch.mesh->bounds.diagonal() / frame.projection.pixelSize(1)) /
                                      std::max(1.0f, frame.target.lineWidth));
        glBindVertexArray(mesh.edgeArray);
        InstanceStore::bind(range);
        glDrawElementsInstanced(GL_LINES, mesh.edgeIndexCount, GL_UNSIGNED_INT, nullptr, range.count);
        ++frame.statistics.drawCalls;
    }
}

} // namespace Rendra
