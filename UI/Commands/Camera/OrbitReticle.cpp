#include "UI/Commands/Camera/OrbitReticle.h"

#include "Server/DataModel/Asset.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Camera/ActiveView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Vu::Commands {
namespace {

using Vs::Scene::Camera;
using Vs::Scene::NodeChange;

/// What the fragment's camera sees of the smaller side of the canvas.
constexpr float kSize = Camera::s_normalPersLens;
constexpr double kFullTurn = 6.283185307179586;
constexpr int kCircleClientType = 0x1000;
/// As it looks on the screen.
constexpr double kGrey = 0.1686;

Vs::Colour reticleColour()
{
    const auto linear = static_cast<float>(std::pow(kGrey, 2.2));
    return {linear, linear, linear, 1.0f};
}

void aim(Camera& camera)
{
    camera.projection(Vs::Scene::kPerspectiveProjection);
    camera.extentsWidth(kSize);
    camera.extentsHeight(kSize);
    camera.clipNear(0.1);
    camera.clipFar(2.0);
    camera.target({0, 0, 0});
    camera.position({0, 0, -1});
    camera.up({0, 1, 0});
}

void draw(Rendra::Graphics::GroupNode* root, double radius, double tickEnd)
{
    const auto geometry = NodeChange::createLODGeometryNode(root, true);
    NodeChange change(geometry.get());
    change.colorEffect(reticleColour())
        .arc(GkPoint3d::kOrigin, {0, 0, 1}, {0, radius, 0}, 0, kFullTurn, kCircleClientType);
    const double cross = radius / 10;
    const std::pair<GkPoint3d, GkPoint3d> lines[] = {
        {{0, tickEnd, 0}, {0, radius, 0}},   {{0, -tickEnd, 0}, {0, -radius, 0}},
        {{-tickEnd, 0, 0}, {-radius, 0, 0}}, {{tickEnd, 0, 0}, {radius, 0, 0}},
        {{cross, 0, 0}, {-cross, 0, 0}},     {{0, cross, 0}, {0, -cross, 0}},
    };
    for (const auto& [from, to] : lines)
        change.polyline({from, to});
}

} // namespace

OrbitReticle::OrbitReticle() : m_radius(0.5f * kSize * (2.0 / 3.0)), m_tickEnd(0.5f * kSize * (5.0 / 6.0)) {}

OrbitReticle::~OrbitReticle()
{
    hide();
}

GraphicsView* OrbitReticle::view() const
{
    return graphicsViewOf(m_viewNode.get());
}

bool OrbitReticle::show()
{
    if (m_shown)
        return true;
    const AssetSession* session = SessionMgr::get()->currentAssetSession();
    auto* adapter = session ? Vs::cast<Vs::Scene::SceneAssetAdapter>(session->asset()->adapter()) : nullptr;
    GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    if (!adapter || !view)
        return false;
    m_fragment = Vs::Scene::ViewFragment::make(adapter->transientSegment(), "OrbitReticle");
    Vs::Scene::ViewFragmentNodeData* data = m_fragment->data();
    data->sceneAssetAdapter(adapter);
    data->supportSelectBackground(false);
    data->renderParams(0)->visualStyle(Vs::Scene::kHelpersOnly);
    data->renderParams(0)->groundPlaneEnabled(false);
    aim(*data->camera());
    m_root = Rendra::Scene::MakeGroupNode("OrbitReticle");
    draw(m_root.get(), m_radius, m_tickEnd);
    NodeChange(m_fragment->viewFragmentNode()).add(m_root);
    view->addFragment(m_fragment);
    m_viewNode = view->viewNode();
    m_shown = true;
    return true;
}

void OrbitReticle::hide()
{
    if (!std::exchange(m_shown, false))
        return;
    if (GraphicsView* shownIn = view())
        shownIn->removeFragment(m_fragment.get());
    NodeChange(m_fragment->viewFragmentNode()).remove(m_root.get());
    m_root.reset();
    m_fragment.reset();
    m_viewNode.reset();
}

int OrbitReticle::zone(const Vs::Point2& position) const
{
    const GraphicsView* shownIn = view();
    const GraphicsCanvas* canvas = shownIn ? shownIn->canvas() : nullptr;
    const int width = canvas ? canvas->width() : 0, height = canvas ? canvas->height() : 0;
    if (width <= 0 || height <= 0)
        return kOutside;
    const int smaller = std::min(width, height);
    const int centreX = width / 2, centreY = height / 2;
    const double dx = double(position.x - centreX) / smaller * kSize;
    const double dy = double(position.y - centreY) / smaller * kSize;
    const float band = kSize / 50;
    const auto onTick = [&](double along, double across) {
        return std::abs(across) < band && std::abs(along) > m_radius && std::abs(along) < m_tickEnd;
    };
    if (onTick(dy, dx))
        return kOnVerticalTick;
    if (onTick(dx, dy))
        return kOnHorizontalTick;
    const double distance = std::sqrt(dx * dx + dy * dy);
    if (distance < m_radius)
        return kInCircle;
    if (distance > m_radius && distance < 2 * m_tickEnd - m_radius)
        return kInRing;
    return kOutside;
}

} // namespace Vu::Commands
