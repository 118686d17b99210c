#include "UI/Base/Session/Manipulator.h"

#include "Server/Base/Require.h"
#include "Server/Scene/NodeChange.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/OverlayStack.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Vu {
namespace {

using Kind = ManipulatorHandle::Kind;
using Vs::Scene::NodeChange;

/// In logical pixels: the length of an arrow, and how near the mouse has to be.
constexpr double kSize = 105, kReach = 7;
/// The fewest pixels between two places that a drag snaps to while the step follows the zoom.
constexpr double kAdaptiveStep = 10;
constexpr double kAngleStep = 5 * std::numbers::pi / 180;

/// 1, 2 or 5 times a power of ten, and not below the length.
double roundStep(double length)
{
    const double power = std::pow(10, std::floor(std::log10(length)));
    for (const double times : {1.0, 2.0, 5.0})
        if (times * power >= length * (1 - 1e-9))
            return times * power;
    return 10 * power;
}

double snapped(double value, double step)
{
    return step > 0 ? std::round(value / step) * step : value;
}

} // namespace

Manipulator::Manipulator(AssetGraphicsView& view, std::vector<ManipulatorHandle> handles, Listener listener)
    : m_view(view),
      m_handles(std::move(handles)),
      m_listener(std::move(listener)),
      m_fragment(Vs::Scene::ViewFragment::make(nullptr, "Manipulator")),
      m_root(Rendra::Scene::MakeGroupNode("Manipulator"))
{
    Vs::require(m_listener != nullptr, "somebody is told of what is dragged");
    for (const ManipulatorHandle& handle : m_handles)
        Vs::require(handle.axis >= 0 && handle.axis < 3, "a handle has one of three axes");
    Vs::Scene::ViewFragmentNodeData* data = m_fragment->data();
    data->supportSelectBackground(false);
    if (const Vs::Scene::ViewFragment* model = view.modelFragment())
        m_fragment->camera(Vs::StrongRef<Vs::Scene::Camera>(model->camera()));
    Vs::Scene::RenderParams& params = *m_fragment->renderParams();
    params.visualStyle(Vs::Scene::kShaded);
    params.groundPlaneEnabled(false);
    params.groundShadowEnabled(false);
    params.groundReflectionEnabled(false);
    params.ambientOcclusionEnabled(false);
    params.nprEffect(0);
    params.objectShadowType(0);
    for (const ManipulatorHandle& handle : m_handles) {
        m_nodes.push_back(Rendra::Graphics::BodyNode::make(meshOf(handle), colourOf(handle, false)));
        NodeChange(m_root.get()).add(m_nodes.back());
    }
    NodeChange(m_fragment->viewFragmentNode()).add(m_root);
    view.addFragment(m_fragment);
    view.overlays().add(this);
    redraw();
}

Manipulator::~Manipulator()
{
    m_view.overlays().remove(this);
    m_view.removeFragment(m_fragment.get());
    redraw();
}

std::vector<ManipulatorHandle> Manipulator::handlesOf(std::initializer_list<Kind> kinds)
{
    std::vector<ManipulatorHandle> handles;
    for (const Kind kind : kinds)
        for (int axis = 0; axis < 3; ++axis)
            handles.push_back({kind, axis});
    return handles;
}

void Manipulator::redraw() const
{
    if (m_view.canvas())
        m_view.canvas()->invalidate();
}

void Manipulator::frame(const GkMatrix3d& frame)
{
    m_frame = frame;
    NodeChange(m_root.get()).transform(scaledFrame());
    redraw();
}

void Manipulator::visible(bool visible)
{
    m_visible = visible;
    NodeChange(m_fragment->viewFragmentNode()).visible(visible);
    redraw();
}

Vs::Scene::Projection Manipulator::projection() const
{
    return {*m_fragment->camera(), m_width, m_height};
}

GkMatrix3d Manipulator::scaledFrame() const
{
    if (m_width <= 0 || m_height <= 0)
        return m_frame;
    const Vs::Scene::Projection seen = projection();
    const GkPoint3d place = seen.worldToScreen(m_frame * GkPoint3d::kOrigin);
    return m_frame * GkMatrix3d::scaling(kSize * seen.pixelSize(std::max(place.z, 1e-9)));
}

void Manipulator::layOut(double width, double height)
{
    m_width = width;
    m_height = height;
    NodeChange(m_root.get()).transform(scaledFrame());
}

int Manipulator::handleAt(MouseEvent* event) const
{
    if (!m_visible || m_width <= 0 || m_height <= 0)
        return -1;
    const Vs::Scene::Projection seen = projection();
    const GkMatrix3d frame = scaledFrame();
    int nearest = -1;
    double least = kReach;
    for (size_t i = 0; i < m_handles.size(); ++i) {
        const auto distance = distanceTo(m_handles[i], frame, seen, event->x(), m_height - event->y());
        if (distance && *distance < least) {
            least = *distance;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

bool Manipulator::takesMouse(MouseEvent* event)
{
    return isDragging() || handleAt(event) >= 0;
}

void Manipulator::point(int handle)
{
    if (handle == m_pointed)
        return;
    m_pointed = handle;
    for (size_t i = 0; i < m_nodes.size(); ++i)
        NodeChange(m_nodes[i].get()).bodyColour(colourOf(m_handles[i], static_cast<int>(i) == handle));
    redraw();
}

void Manipulator::hover(MouseEvent* event)
{
    point(handleAt(event));
}

void Manipulator::hoverEnd()
{
    if (!isDragging())
        point(-1);
}

void Manipulator::mousePress(MouseEvent* event)
{
    const int handle = event->button() == kLeftButton ? handleAt(event) : -1;
    if (handle < 0)
        return;
    const auto place = placeOn(m_handles[static_cast<size_t>(handle)], m_frame, projection(), event->x(),
                               m_height - event->y());
    if (!place)
        return;
    m_dragged = handle;
    m_dragFrame = m_frame;
    m_start = *place;
    m_shift = {};
    m_turned = 0;
    m_lastAngle = place->x;
    point(handle);
}

void Manipulator::mouseDrag(MouseEvent* event)
{
    if (isDragging())
        tell(event, false);
}

void Manipulator::mouseRelease(MouseEvent* event)
{
    if (isDragging())
        tell(event, true);
}

void Manipulator::tell(MouseEvent* event, bool done)
{
    Drag drag;
    drag.handle = m_handles[static_cast<size_t>(m_dragged)];
    drag.done = done;
    const Vs::Scene::Projection seen = projection();
    const auto place = placeOn(drag.handle, m_dragFrame, seen, event->x(), m_height - event->y());
    const auto* snap = Inference::SnapManager::get();
    const bool snaps = snap->enableDistanceSnapping() && (event->modifierMask() & kAltModifier) == 0;
    if (drag.handle.kind == Kind::Turn) {
        if (place)
            m_turned += std::remainder(place->x - m_lastAngle, 2 * std::numbers::pi);
        m_lastAngle = place ? place->x : m_lastAngle;
        drag.angle = snapped(m_turned, snaps ? kAngleStep : 0);
    } else if (place) {
        const GkPoint3d at = seen.worldToScreen(m_dragFrame * GkPoint3d::kOrigin);
        const double pixel = seen.pixelSize(std::max(at.z, 1e-9));
        const double step = !snaps                 ? 0
                            : snap->adaptiveSnap() ? roundStep(kAdaptiveStep * pixel)
                                                   : snap->snapIncrement();
        const GkVector3d shift = *place - m_start;
        m_shift = {snapped(shift.x, step), snapped(shift.y, step), snapped(shift.z, step)};
    }
    drag.shift = m_shift;
    if (done)
        m_dragged = -1;
    // The listener may end the command, and this object with it.
    const Listener listener = m_listener;
    listener(drag);
}

} // namespace Vu
