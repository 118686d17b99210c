#include "UI/Commands/Camera/ZoomCmd.h"

#include "Server/Geometry/GkLine3d.h"
#include "Server/Geometry/GkPlane.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SceneEvaluator.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/ToolMouse.h"
#include "UI/Commands/Resources.h"

#include <utility>

namespace Vu::Commands {

using Vs::Scene::Camera;

namespace {

constexpr double kZoomOfOnePixel = 0.01;
constexpr double kDeltaOfOneNotch = 120.0;
constexpr double kZoomOfOneNotch = 0.1;

/// Where the line from `eye` to `seen` meets the plane of the target; the origin if it doesn't.
GkPoint3d inTargetPlane(const GkPlane& plane, const GkPoint3d& eye, const GkPoint3d& seen)
{
    GkPoint3d place;
    return plane.intersectWith(GkLine3d(eye, seen), place, GkContext::gTol) ? place : GkPoint3d::kOrigin;
}

} // namespace

constinit const CommandRow ZoomCmdDef::kRow = {
    .key = L"ZoomCommand", .title = "Zoom", .icon = &Resources::Zoom};

ZoomCmd::ZoomCmd(ZoomCmdDef* definition, CommandContext* context)
    : Implements(definition, context), m_passive(CameraCmdDef::passive(context))
{
    // Repeating is for tools that were chosen.
    repeatable(!m_passive);
    showToolCursor(*this, Resources::ZoomCursor());
}

ZoomCmd::~ZoomCmd()
{
    MouseEventSource::get()->unsubscribe(this);
}

void ZoomCmd::onActivate()
{
    Implements::onActivate();
    MouseEventSource::get()->subscribe(this);
    // The release of a drag that another button broke off may have come meanwhile.
    if (!MouseEventSource::get()->isHeld(kLeftButton))
        m_pendingClicks = 0;
}

void ZoomCmd::onDeactivate()
{
    MouseEventSource::get()->unsubscribe(this);
    if (std::exchange(m_curViewFragmentNode, nullptr)) {
        endCameraInteraction(assetSession());
        m_pendingClicks = 1;
    }
    Implements::onDeactivate();
}

void ZoomCmd::mouseMove(MouseEvent*)
{
    if (!m_passive)
        activateCanvasUnderPointer();
}

void ZoomCmd::mouseDragBegin(MouseEvent* event)
{
    if (event->button() != kLeftButton)
        return;
    SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
    m_curViewFragmentNode = evaluator ? evaluator->viewFragmentNode() : nullptr;
    if (!m_curViewFragmentNode)
        return;
    m_lastPosition = event->position();
    startCameraInteraction(assetSession());
    WorkspaceWindow::invalidate(kInvalidateAll);
}

void ZoomCmd::mouseDrag(MouseEvent* event)
{
    Camera* camera = cameraOf(m_curViewFragmentNode.get());
    if (!camera)
        return;
    const int dy = event->position().y - m_lastPosition.y;
    camera->zoom(1.0 - dy * kZoomOfOnePixel);
    m_lastPosition = event->position();
    cameraStepMade(camera);
}

void ZoomCmd::mouseDragEnd(MouseEvent* event)
{
    if (m_curViewFragmentNode)
        cameraDragMade(cameraOf(m_curViewFragmentNode.get()));
    if (event->button() == kLeftButton) {
        if (m_curViewFragmentNode)
            endCameraInteraction(assetSession());
        m_curViewFragmentNode = nullptr;
    }
    m_pendingClicks = 1;
}

void ZoomCmd::mouseUp(MouseEvent* event)
{
    if (event->button() == kLeftButton && m_pendingClicks-- == 0)
        terminateCommand();
}

void ZoomCmd::zoomByScroll(MouseEvent* event)
{
    if (!event || !graphicsViewOf(SessionMgr::get()->activeAssetSession()))
        return;
    SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
    Camera* camera = evaluator ? evaluator->camera() : nullptr;
    if (!camera)
        return;
    // Of several views on the session, the one under the pointer: its is the camera that is zoomed.
    const GraphicsView& view = *evaluator->view();
    const Vs::Point2 place = event->position();
    const GkPoint3d before = view.windowToWorld(place), eyeBefore = camera->position();

    const bool reverse = UIBaseOptionGroup::get()->reverseZoomDirection();
    const double delta = reverse ? -event->delta() : event->delta();
    camera->zoom(1.0 - delta / kDeltaOfOneNotch * kZoomOfOneNotch);
    // The zoom alone: a replay has no pointer under which a place is to be held.
    recordCameraStep(camera);

    GkVector3d correction;
    if (camera->projection() == Vs::Scene::kParallelProjection) {
        correction = before - view.windowToWorld(place);
    } else {
        const GkPlane plane(camera->target(), camera->direction());
        correction = inTargetPlane(plane, eyeBefore, before) -
                     inTargetPlane(plane, camera->position(), view.windowToWorld(place));
    }
    camera->dolly(correction);
    if (SceneEvaluator* stale = SceneEvaluator::get(place))
        stale->invalidate();
    WorkspaceWindow::invalidate(kInvalidateAll);
}

} // namespace Vu::Commands
