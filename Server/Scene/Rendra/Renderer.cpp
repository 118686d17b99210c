#include "Server/Scene/Rendra/Renderer.h"

#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/MSAASettings.h"
#include "Server/Scene/Rendra/Background.h"
#include "Server/Scene/Rendra/BodyPainter.h"
#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/GlassPainter.h"
#include "Server/Scene/Rendra/GroundPainter.h"
#include "Server/Scene/Rendra/HelperPainter.h"
#include "Server/Scene/Rendra/HighlightPainter.h"
#include "Server/Scene/Rendra/LayoutGrid.h"
#include "Server/Scene/Rendra/PartPainter.h"
#include "Server/Scene/Rendra/PictureTarget.h"
#include "Server/Scene/Rendra/Sketch.h"
#include "Server/Scene/Rendra/TooCoarse.h"
#include "Server/Scene/Rendra/ViewMarks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace Rendra {

using Vs::Scene::Projection;
using Vs::Scene::ViewFragment;

namespace {

/// The scenes drawn last are kept; more than this many are hardly ever on the screen at a time.
constexpr size_t kKeptScenes = 12;
/// More samples per pixel aren't worth their time.
constexpr int kSoftwareSamples = 4, kHardwareSamples = 8;
/// Bodies fewer pixels across are left out.
constexpr float kSmallest = 0.6f, kSmallestMoving = 2.0f;
/// Scenes with at most this many triangles are drawn completely even when they move.
constexpr uint64_t kQuick = 6000000, kQuickInSoftware = 150000;

Area areaOf(ViewFragment& fragment, const RenderTarget& target)
{
    const Vs::Scene::Viewport* const viewport = fragment.data()->viewport();
    if (!viewport)
        return {0, 0, target.width, target.height};
    return {int(std::lround(viewport->left() * target.width)),
            int(std::lround(viewport->bottom() * target.height)),
            int(std::lround(viewport->width() * target.width)),
            int(std::lround(viewport->height() * target.height))};
}

} // namespace

struct Renderer::Data
{
    Background background;
    BodyPainter bodies;
    GroundPainter ground{bodies};
    GlassPainter glass{bodies};
    Sketch sketch;
    LayoutGrid grid;
    GridUnderGlass gridUnderGlass{grid};
    HighlightPainter highlights;
    PartPainter parts;
    HelperPainter helpers;
    ViewMarks marks;
    /// What is drawn for each fragment, in this order.
    const std::array<Pass*, 10> passes{&ground, &bodies,     &gridUnderGlass, &glass,   &sketch,
                                       &grid,   &highlights, &parts,          &helpers, &marks};
    EnvironmentLight light;
    const Vs::Scene::Environment* environment = nullptr;
    MeshStore meshes;
    std::vector<std::unique_ptr<KeptScene>> scenes;
    RenderStatistics statistics;
    uint64_t pictures = 0;
    bool ready = false;
    bool software = false;

    KeptScene& sceneOf(const Graphics::Node& root);
    void drawBackground(const std::vector<ViewFragment*>& fragments, const RenderTarget& target,
                        const Area& tile);
    void drawFragment(ViewFragment& fragment, const RenderTarget& target, const Area& tile);
};

Renderer::Renderer() : m_data(std::make_unique<Data>()) {}

Renderer::~Renderer()
{
    if (!m_data->ready)
        return;
    for (const auto& scene : m_data->scenes)
        scene->release();
    m_data->meshes.release();
    m_data->background.release();
    for (Pass* pass : m_data->passes)
        pass->release();
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
    m_data->ready = m_data->background.make(status);
    for (Pass* pass : m_data->passes)
        m_data->ready = m_data->ready && pass->make(status);
    if (!m_data->ready)
        return false;
    const GLubyte* name = glGetString(GL_RENDERER);
    const std::string_view driver(name ? reinterpret_cast<const char*>(name) : "");
    for (const char* known : {"llvmpipe", "softpipe", "swrast", "SwiftShader"})
        m_data->software = m_data->software || driver.find(known) != std::string_view::npos;
    Vs::Scene::OfferMSAA(
        PictureTarget::samplesOffered(m_data->software ? kSoftwareSamples : kHardwareSamples));
    return true;
}

bool Renderer::drawsInSoftware() const
{
    return m_data->software;
}

uint64_t Renderer::meshBytes() const
{
    return m_data->meshes.bytes();
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
    glVertexAttrib4f(kFaceColour, 0, 0, 0, 0); // for meshes that have none
    glViewport(0, 0, tile.width, tile.height);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    data.environment = target.environment ? target.environment
                                          : &Vs::Scene::EnvironmentManager::getEnvManager()->environment({});
    data.light.prepare(*data.environment);
    if (!target.transparentBackground)
        data.drawBackground(fragments, target, tile);
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
    for (Pass* pass : data.passes)
        pass->collect();
}

std::vector<Vs::Scene::FinerWish> Renderer::tooCoarse(const std::vector<ViewFragment*>& fragments,
                                                      const RenderTarget& target)
{
    std::vector<Vs::Scene::FinerWish> wishes;
    for (ViewFragment* fragment : fragments) {
        if (!fragment || fragment->renderParams()->visualStyle() == Vs::Scene::kHelpersOnly)
            continue;
        const Graphics::GroupNode& root = *fragment->viewFragmentNode();
        KeptScene& scene = m_data->sceneOf(root);
        scene.list.update(root);
        const Area area = areaOf(*fragment, target);
        const Projection projection(*fragment->camera(), area.width, area.height, root.boundingBox());
        std::ranges::move(Rendra::tooCoarse(scene.list, projection, target.deviation * target.pixelScale),
                          std::back_inserter(wishes));
    }
    return wishes;
}

uint64_t Renderer::triangles(const std::vector<ViewFragment*>& fragments)
{
    uint64_t all = 0;
    for (ViewFragment* fragment : fragments) {
        if (!fragment)
            continue;
        const Graphics::GroupNode& root = *fragment->viewFragmentNode();
        KeptScene& scene = m_data->sceneOf(root);
        scene.list.update(root);
        all += scene.list.shownTriangles();
    }
    return all;
}

// The first fragment is the one that shows the model; its camera sees the sky.
void Renderer::Data::drawBackground(const std::vector<ViewFragment*>& fragments, const RenderTarget& target,
                                    const Area& tile)
{
    const auto first = std::find_if(fragments.begin(), fragments.end(), [](auto* each) { return each; });
    const Vs::StrongRef<Vs::Scene::Camera> none =
        first == fragments.end() ? Vs::Scene::Camera::make() : nullptr;
    const Vs::Scene::Camera& camera = none ? *none : *(*first)->camera();
    const GkVector3d up = none ? GkVector3d::kZAxis : (*first)->renderParams()->groundPlaneOrientation();
    background.draw(target, tile, Projection(camera, target.width, target.height), up, *environment, light,
                    target.moving && software);
}

KeptScene& Renderer::Data::sceneOf(const Graphics::Node& root)
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
        (*oldest)->release();
        scenes.erase(oldest);
    }
    scenes.push_back(std::make_unique<KeptScene>());
    scenes.back()->root = root.id();
    scenes.back()->lastUse = pictures;
    return *scenes.back();
}

void Renderer::Data::drawFragment(ViewFragment& fragment, const RenderTarget& target, const Area& tile)
{
    const Graphics::GroupNode& root = *fragment.viewFragmentNode();
    KeptScene& scene = sceneOf(root);
    scene.list.update(root);

    const Area area = areaOf(fragment, target);
    const Area part = intersection(area, tile);
    // Finer meshes may reach a little beyond the bounds.
    BBox bounds = root.boundingBox();
    if (const double reach = Vs::Scene::FinerMeshes::get().reach(); reach > 0 && !bounds.isEmpty()) {
        bounds.add(bounds.low() - GkVector3d(reach, reach, reach));
        bounds.add(bounds.high() + GkVector3d(reach, reach, reach));
    }
    const Projection projection(*fragment.camera(), area.width, area.height, bounds);
    statistics.instances += scene.list.instances();
    if (part.width == 0 || part.height == 0)
        return;
    const uint64_t quick = software ? kQuickInSoftware : kQuick;
    const bool coarse = target.moving && scene.list.triangles() > quick;
    const float smallest = coarse ? kSmallestMoving : kSmallest;
    statistics.uploadedInstances += scene.instances.update(scene.list, projection, smallest);
    for (const InstanceStore::Range& range : scene.instances.ranges())
        statistics.drawnInstances += uint64_t(range.count);
    const Frame frame{.fragment = fragment,
                      .scene = scene,
                      .meshes = meshes,
                      .projection = projection,
                      .target = target,
                      .area = area,
                      .part = part,
                      .tile = tile,
                      .statistics = statistics,
                      .environment = *environment,
                      .light = light,
                      .coarse = coarse,
                      .finer = !target.moving || (!software && scene.list.shownTriangles() <= quick),
                      .quick = target.moving && software,
                      .software = software,
                      .smallest = smallest};
    statistics.glass = statistics.glass || frame.showsGlass();
    for (Pass* pass : passes) {
        frame.drawIntoPicture();
        pass->draw(frame);
    }
}

} // namespace Rendra
