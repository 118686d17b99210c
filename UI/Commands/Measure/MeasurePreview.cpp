#include "UI/Commands/Measure/MeasurePreview.h"

#include "Server/Dimension/DimensionInfo.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneNodes.h"
#include "Server/Scene/SimpleMesh.h"
#include "UI/Base/Session/Adorner.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace Vu::Commands {

using Vs::Scene::NodeChange;

namespace {

/// Below this a length or an angle has no extent.
constexpr double kLeast = 1e-05;
/// For small angles the arc is drawn this far out, as a fraction of the legs, so that there is room for the
/// text.
constexpr double kLeastArc = 0.5235987755982988;
constexpr float kUsualWeight = 1.0f, kHighlightedWeight = 1.5f;

GkPoint3d scaled(const GkPoint3d& point, double factor, const GkPoint3d& about)
{
    return about + (point - about) * factor;
}

Vs::Dimension::Viewer viewerOf(const Rendra::Graphics::GroupNode* fragmentNode, const GkPoint3d& place)
{
    const Vs::Scene::ViewFragmentNodeData* data = Vs::Scene::viewFragmentNodeData(fragmentNode);
    const GraphicsCanvas* canvas = SceneUtilities::getActiveGraphicsCanvas();
    if (!data || !data->camera() || !canvas)
        return {};
    return Vs::Dimension::Viewer::of(*data->camera(), canvas->width(), canvas->height(), place);
}

} // namespace

MeasurePreview::~MeasurePreview()
{
    clear();
}

bool MeasurePreview::hasExtent() const
{
    if (m_result.point1.isEqualTo(m_result.point2, GkContext::gTol) || std::abs(m_result.value) < kLeast)
        return false;
    return m_isDistance || (std::abs(m_result.value - std::numbers::pi) >= kLeast &&
                            !m_result.point2.isEqualTo(m_result.point3, GkContext::gTol));
}

void MeasurePreview::show(const Vs::MeasureResult& result, const std::wstring& text)
{
    clear();
    m_result = result;
    m_text = text;
    Rendra::Graphics::GroupNode* parent = SceneUtilities::getActiveEditNode();
    if (!parent || !hasExtent())
        return;
    m_node = NodeChange::createGroupNode(nullptr, 1, false, true);
    NodeChange(m_node.get()).occludedEffect("", Adorner::previewColor, -1.0f);
    highlight(false);
    m_parent = Vs::StrongRef<Rendra::Graphics::GroupNode>(parent);
    draw();
    NodeChange(parent).add(m_node);
    Vs::Scene::CameraEventSource::get()->subscribe(this);
    CanvasEventSource::get()->subscribe(this);
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void MeasurePreview::text(const std::wstring& text)
{
    if (!shown() || std::exchange(m_text, text) == text)
        return;
    draw();
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void MeasurePreview::clear()
{
    if (!shown())
        return;
    Vs::Scene::CameraEventSource::get()->unsubscribe(this);
    CanvasEventSource::get()->unsubscribe(this);
    NodeChange(m_parent.get()).remove(m_node.get());
    m_parent.reset();
    m_node.reset();
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void MeasurePreview::highlight(bool on)
{
    if (!m_node)
        return;
    NodeChange(m_node.get())
        .lineStyle(on ? kHighlightedWeight : kUsualWeight,
                   on ? Adorner::colorHighlighted() : Adorner::previewColor);
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void MeasurePreview::cameraChanged(Vs::Scene::CameraEvent* event)
{
    const Vs::Scene::ViewFragmentNodeData* data = Vs::Scene::viewFragmentNodeData(m_parent.get());
    if (data && event->camera() == data->camera())
        draw();
}

void MeasurePreview::canvasResized(CanvasEvent* event)
{
    if (event->canvas() == SceneUtilities::getActiveGraphicsCanvas())
        draw();
}

void MeasurePreview::draw()
{
    NodeChange(m_node.get()).removeAll();
    if (m_isDistance)
        drawDistance();
    else
        drawAngle();
}

void MeasurePreview::drawDistance()
{
    Vs::Dimension::LinearDimensionInfo dimension(m_result.point1, m_result.point2);
    dimension.color(Adorner::previewColor);
    dimension.text(m_text);
    dimension.viewer(viewerOf(m_parent.get(), scaled(m_result.point1, 0.5, m_result.point2)));
    NodeChange change(m_node.get());
    dimension.buildDimensionGraphics(change, false);
}

void MeasurePreview::drawAngle()
{
    const auto& [value, point1, point2, point3] = m_result;
    GkPoint3d centre = scaled(point1, 0.5, point3);
    centre = scaled(centre, std::max(value, kLeastArc), point2);
    Vs::Dimension::AngularDimensionInfo dimension(point1, point2, point2, point3, centre);
    dimension.color(Adorner::previewColor);
    dimension.text(m_text);
    dimension.viewer(viewerOf(m_parent.get(), centre));
    NodeChange change(m_node.get());
    dimension.buildDimensionGraphics(change, false);
    change.add(Vs::Scene::BuildSimpleMesh({point1, point2}));
    change.add(Vs::Scene::BuildSimpleMesh({point3, point2}));
}

} // namespace Vu::Commands
