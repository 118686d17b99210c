#include "Server/Scene/Renderer.h"

#include "Server/Scene/Projection.h"
#include "Server/Scene/Rendra/DrawList.h"
#include "Server/Scene/Rendra/HelperPainter.h"
#include "Server/Scene/Rendra/InstanceStore.h"
#include "Server/Scene/Rendra/MeshStore.h"
#include "Server/Scene/Rendra/Occlusion.h"
#include "Server/Scene/Rendra/Program.h"
#include "Server/Scene/Rendra/Shaders.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Rendra {

using Vs::Scene::Projection;
using Vs::Scene::ViewFragment;

namespace {

/// Scenes that were drawn last are kept; more than so many at a time are hardly ever on the screen.
constexpr size_t kKeptScenes = 12;
/// How far bodies keep the light from each other, as a part of the scene's size.
constexpr double kOcclusionReach = 0.05;

struct Rgb
{
    float r, g, b;
};
constexpr Rgb kDomeLow{0.93f, 0.945f, 0.96f}, kDomeHigh{0.62f, 0.70f, 0.79f};
constexpr Rgb kPlainLow{0.975f, 0.98f, 0.985f}, kPlainHigh{0.83f, 0.865f, 0.905f};
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

/// A part of the picture, in pixels from its lower left corner.
struct Area
{
    int x, y, width, height;
};

Area intersection(const Area& a, const Area& b)
{
    const int left = std::max(a.x, b.x), bottom = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width), top = std::min(a.y + a.height, b.y + b.height);
    return {left, bottom, std::max(0, right - left), std::max(0, top - bottom)};
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

void setMatrix(GLint location, const double (&rows)[4][4])
{
    float values[16];
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            values[column * 4 + row] = float(rows[row][column]);
    glUniformMatrix4fv(location, 1, GL_FALSE, values);
}

/// The clip matrix of a part of a view.
void clipMatrixOf(const Projection& projection, const Area& area, const Area& part, double (&clip)[4][4])
{
    projection.clipMatrix(clip, double(part.x - area.x) / area.width, double(part.y - area.y) / area.height,
                          double(part.x - area.x + part.width) / area.width,
                          double(part.y - area.y + part.height) / area.height);
}

/// Directs what follows into a part of the picture, with the state that a fragment begins with.
void drawInto(const RenderTarget& target, const Area& part, const Area& tile)
{
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glViewport(part.x - tile.x, part.y - tile.y, part.width, part.height);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

/// The width of lines nearest to `wanted` that the driver draws.
float offeredWidth(const RenderTarget& target, float wanted)
{
    float widths[2] = {1, 1};
    glGetFloatv(target.samples > 1 ? GL_SMOOTH_LINE_WIDTH_RANGE : GL_ALIASED_LINE_WIDTH_RANGE, widths);
    return std::clamp(wanted, widths[0], widths[1]);
}

} // namespace

struct Renderer::Data
{
    /// What is kept of one tree of nodes.
    struct Scene
    {
        uint64_t root;
        uint64_t lastUse = 0;
        DrawList list;
        InstanceStore instances;
    };

    Program faces, edges, background;
    Occlusion occlusion;
    HelperPainter helpers;
    GLuint noArray = 0; ///< A vertex array without attributes, for the background.
    MeshStore meshes;
    std::vector<std::unique_ptr<Scene>> scenes;
    RenderStatistics statistics;
    uint64_t pictures = 0;
    bool ready = false;
    bool software = false;

    Scene& sceneOf(const Graphics::Node& root);
    void drawBackground(const RenderTarget& target, const Area& tile);
    void drawFragment(ViewFragment& fragment, const RenderTarget& target, const Area& tile);
    void drawBodies(ViewFragment& fragment, Scene& scene, const Projection& projection,
                    const RenderTarget& target, const Area& area, const Area& part, const Area& tile);
    void drawFaces(Scene& scene, bool transparent);
    bool findOcclusion(Scene& scene, const Projection& projection, const RenderTarget& target,
                       const Area& area, const Area& part, double radius);
    void drawEdges(Scene& scene, const Projection& projection, const RenderTarget& target,
                   const float (&colour)[4]);
    void setView(const Program& program, const Scene& scene, const Projection& projection, const Area& area,
                 const Area& part);
};

Renderer::Renderer() : m_data(std::make_unique<Data>()) {}

Renderer::~Renderer()
{
    if (!m_data->ready)
        return;
    for (const auto& scene : m_data->scenes)
        scene->instances.release();
    m_data->meshes.release();
    m_data->occlusion.release();
    m_data->helpers.release();
    for (Program* program : {&m_data->faces, &m_data->edges, &m_data->background})
        program->release();
    glDeleteVertexArrays(1, &m_data->noArray);
}

void Renderer::abandon()
{
    m_data = std::make_unique<Data>();
}

bool Renderer::initialize(Vs::Status& status)
{
    if (m_data->ready)
        return true;
    if (!epoxy_is_desktop_gl() || epoxy_gl_version() < 33) {
        status.addError(L"Drawing needs OpenGL 3.3; the graphics driver offers version " +
                        std::to_wstring(epoxy_gl_version() / 10) + L"." +
                        std::to_wstring(epoxy_gl_version() % 10) + L".");
        return false;
    }
    m_data->ready = m_data->faces.make("faces", Shaders::kFaceVertex, Shaders::kFaceFragment, status) &&
                    m_data->edges.make("edges", Shaders::kEdgeVertex, Shaders::kEdgeFragment, status) &&
                    m_data->background.make("background", Shaders::kBackgroundVertex,
                                            Shaders::kBackgroundFragment, status) &&
                    m_data->helpers.make(status);
    if (!m_data->ready)
        return false;
    glGenVertexArrays(1, &m_data->noArray);
    const GLubyte* name = glGetString(GL_RENDERER);
    const std::string_view driver(name ? reinterpret_cast<const char*>(name) : "");
    for (const char* known : {"llvmpipe", "softpipe", "swrast", "SwiftShader"})
        m_data->software = m_data->software || driver.find(known) != std::string_view::npos;
    return true;
}

bool Renderer::drawsInSoftware() const
{
    return m_data->software;
}

const RenderStatistics& Renderer::statistics() const
{
    return m_data->statistics;
}

void Renderer::render(ViewFragment* fragment, int width, int height, uint32_t framebuffer)
{
    RenderTarget target;
    target.framebuffer = framebuffer;
    target.width = width;
    target.height = height;
    render({fragment}, target);
}

void Renderer::render(const std::vector<ViewFragment*>& fragments, const RenderTarget& target)
{
    Data& data = *m_data;
    if (!data.ready || target.width <= 0 || target.height <= 0)
        return;
    data.statistics = RenderStatistics();
    ++data.pictures;
    Area tile{target.tileX, target.tileY, target.tileWidth, target.tileHeight};
    if (tile.width == 0 || tile.height == 0)
        tile = {0, 0, target.width, target.height};

    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glFrontFace(GL_CCW);
    glDisable(GL_BLEND);
    glDisable(GL_FRAMEBUFFER_SRGB);
    target.samples > 1 ? glEnable(GL_MULTISAMPLE) : glDisable(GL_MULTISAMPLE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glViewport(0, 0, tile.width, tile.height);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!target.transparentBackground)
        data.drawBackground(target, tile);
    bool first = true;
    for (ViewFragment* fragment : fragments) {
        if (!fragment)
            continue;
        if (!std::exchange(first, false))
            glClear(GL_DEPTH_BUFFER_BIT);
        data.drawFragment(*fragment, target, tile);
    }
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glUseProgram(0);
    data.meshes.collect();
    data.helpers.collect();
}

Renderer::Data::Scene& Renderer::Data::sceneOf(const Graphics::Node& root)
{
    const auto found = std::find_if(scenes.begin(), scenes.end(),
                                    [&](const auto& scene) { return scene->root == root.id(); });
    if (found != scenes.end()) {
        (*found)->lastUse = pictures;
        return **found;
    }
    if (scenes.size() >= kKeptScenes) {
        const auto oldest = std::min_element(scenes.begin(), scenes.end(), [](const auto& a, const auto& b) {
            return a->lastUse < b->lastUse;
        });
        (*oldest)->instances.release();
        scenes.erase(oldest);
    }
    scenes.push_back(std::make_unique<Scene>());
    scenes.back()->root = root.id();
    scenes.back()->lastUse = pictures;
    return *scenes.back();
}

void Renderer::Data::drawBackground(const RenderTarget& target, const Area& tile)
{
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    background.use();
    const Rgb& low = target.dome ? kDomeLow : kPlainLow;
    const Rgb& high = target.dome ? kDomeHigh : kPlainHigh;
    glUniform3f(background.uniform("low"), low.r, low.g, low.b);
    glUniform3f(background.uniform("high"), high.r, high.g, high.b);
    glUniform2f(background.uniform("tile"), float(tile.y) / float(target.height),
                float(tile.y + tile.height) / float(target.height));
    glBindVertexArray(noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glDepthMask(GL_TRUE);
}

void Renderer::Data::drawFragment(ViewFragment& fragment, const RenderTarget& target, const Area& tile)
{
    const Graphics::GroupNode& root = *fragment.viewFragmentNode();
    Scene& scene = sceneOf(root);
    scene.list.update(root);

    Area area{0, 0, target.width, target.height};
    if (const Vs::Scene::Viewport* viewport = fragment.data()->viewport())
        area = {int(std::lround(viewport->left() * target.width)),
                int(std::lround(viewport->bottom() * target.height)),
                int(std::lround(viewport->width() * target.width)),
                int(std::lround(viewport->height() * target.height))};
    const Area part = intersection(area, tile);
    const Projection projection(*fragment.camera(), area.width, area.height, root.boundingBox());
    statistics.instances += scene.list.instances();
    if (part.width == 0 || part.height == 0)
        return;
    drawInto(target, part, tile);
    if (scene.list.instances() > 0)
        drawBodies(fragment, scene, projection, target, area, part, tile);
    if (!scene.list.helpers().empty()) {
        double clip[4][4];
        clipMatrixOf(projection, area, part, clip);
        const float pixel = std::max(1.0f, target.lineWidth);
        helpers.draw(scene.list.helpers(), projection, clip, pixel, offeredWidth(target, 1.5f * pixel));
    }
}

void Renderer::Data::drawBodies(ViewFragment& fragment, Scene& scene, const Projection& projection,
                                const RenderTarget& target, const Area& area, const Area& part,
                                const Area& tile)
{
    const Graphics::GroupNode& root = *fragment.viewFragmentNode();
    statistics.uploadedInstances += scene.instances.update(scene.list, projection);
    for (const InstanceStore::Range& range : scene.instances.ranges())
        statistics.drawnInstances += uint64_t(range.count);

    const Style style = styleOf(fragment.renderParams()->visualStyle());
    const bool occluded =
        target.effects && style.faces && fragment.renderParams()->ambientOcclusionEnabled() &&
        findOcclusion(scene, projection, target, area, part, root.boundingBox().diagonal() * kOcclusionReach);
    drawInto(target, part, tile);

    setView(faces, scene, projection, area, part);
    glUniform1i(faces.uniform("occluded"), occluded);
    if (occluded) {
        const Area depths = occlusionArea(part, target.pixelScale);
        const float perX = 1.0f / float(depths.width * target.pixelScale);
        const float perY = 1.0f / float(depths.height * target.pixelScale);
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, occlusion.texture());
        glUniform1i(faces.uniform("occlusion"), 0);
        glUniform4f(faces.uniform("occlusionPlace"), perX, perY, float(tile.x - depths.x) * perX,
                    float(tile.y - depths.y) * perY);
    }
    const GkVector3d up = (projection.view() * fragment.renderParams()->groundPlaneOrientation()).normal();
    glUniform3f(faces.uniform("up"), float(up.x), float(up.y), float(up.z));
    if (style.faces || style.depthOnly) {
        // Faces give way to the edges that lie in them.
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0f, 1.0f);
        if (style.depthOnly)
            glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        drawFaces(scene, false);
        if (style.depthOnly)
            drawFaces(scene, true);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glDisable(GL_POLYGON_OFFSET_FILL);
    }

    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    if (style.edges || style.hiddenEdges) {
        setView(edges, scene, projection, area, part);
        if (style.hiddenEdges) {
            glDepthFunc(GL_GREATER);
            drawEdges(scene, projection, target, kHiddenEdgeColour);
            glDepthFunc(GL_LEQUAL);
        }
        if (style.edges)
            drawEdges(scene, projection, target, kEdgeColour);
    }
    if (style.faces) {
        faces.use();
        drawFaces(scene, true);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

bool Renderer::Data::findOcclusion(Scene& scene, const Projection& projection, const RenderTarget& target,
                                   const Area& area, const Area& part, double radius)
{
    const Area depths = occlusionArea(part, target.pixelScale);
    if (!occlusion.begin(depths.width, depths.height))
        return false;
    const Area reach{depths.x, depths.y, depths.width * target.pixelScale, depths.height * target.pixelScale};
    setView(occlusion.depthProgram(), scene, projection, area, reach);
    drawFaces(scene, false);
    const auto partOf = [](int at, int from, int length) { return double(at - from) / length; };
    occlusion.finish(projection, partOf(reach.x, area.x, area.width), partOf(reach.y, area.y, area.height),
                     partOf(reach.x + reach.width, area.x, area.width),
                     partOf(reach.y + reach.height, area.y, area.height), radius);
    return true;
}

void Renderer::Data::setView(const Program& program, const Scene& scene, const Projection& projection,
                             const Area& area, const Area& part)
{
    program.use();
    const GkMatrix3d view = projection.view() * GkMatrix3d::translation(scene.list.origin());
    setMatrix(program.uniform("view"), view.entry);
    double clip[4][4];
    clipMatrixOf(projection, area, part, clip);
    setMatrix(program.uniform("projection"), clip);
    glUniform1i(program.uniform("perspective"), projection.perspective());
}

void Renderer::Data::drawFaces(Scene& scene, bool transparent)
{
    for (size_t i = 0; i < scene.list.batches().size(); ++i) {
        const Batch& batch = *scene.list.batches()[i];
        const InstanceStore::Range& range = scene.instances.ranges()[i];
        if (batch.transparent != transparent || range.count == 0)
            continue;
        const GlMesh& mesh = meshes.get(batch.mesh, statistics.uploadedMeshes);
        // Half of the triangles of a solid face away; leaving them out early is what saves most in software.
        const bool outsideOnly = mesh.closed && batch.mirrored == 0 && !transparent;
        outsideOnly ? glEnable(GL_CULL_FACE) : glDisable(GL_CULL_FACE);
        glBindVertexArray(mesh.faceArray);
        InstanceStore::bind(range);
        glDrawElementsInstanced(GL_TRIANGLES, mesh.indexCount, GL_UNSIGNED_INT, nullptr, range.count);
        ++statistics.drawCalls;
        statistics.triangles += uint64_t(mesh.indexCount / 3) * uint64_t(range.count);
    }
    glDisable(GL_CULL_FACE);
}

void Renderer::Data::drawEdges(Scene& scene, const Projection& projection, const RenderTarget& target,
                               const float (&colour)[4])
{
    glLineWidth(offeredWidth(target, target.lineWidth));
    glUniform4fv(edges.uniform("edgeColour"), 1, colour);
    const GLint pixelsOfBody = edges.uniform("pixelsOfBody");
    for (size_t i = 0; i < scene.list.batches().size(); ++i) {
        const Batch& batch = *scene.list.batches()[i];
        const InstanceStore::Range& range = scene.instances.ranges()[i];
        if (range.count == 0 || batch.mesh->edgePoints.empty())
            continue;
        const GlMesh& mesh = meshes.get(batch.mesh, statistics.uploadedMeshes);
        if (mesh.edgeIndexCount == 0)
            continue;
        glUniform1f(pixelsOfBody, float(batch.mesh->bounds.diagonal() / projection.pixelSize(1)) /
                                      std::max(1.0f, target.lineWidth));
        glBindVertexArray(mesh.edgeArray);
        InstanceStore::bind(range);
        glDrawElementsInstanced(GL_LINES, mesh.edgeIndexCount, GL_UNSIGNED_INT, nullptr, range.count);
        ++statistics.drawCalls;
    }
}

} // namespace Rendra
