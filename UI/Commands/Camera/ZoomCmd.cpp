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
    .key = L"ZoomCommand", .title = "Zoom", .icon = &Resources::Zoom, .arguments = {L"Passive"}};

ZoomCmd::ZoomCmd(ZoomCmdDef* definition, CommandContext* context)
    : Implements(definition, context, Resources::ZoomCursor())
{
}

bool ZoomCmd::onTakeHold(MouseEvent* event)
{
    SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
    m_curViewFragmentNode = evaluator ? evaluator->viewFragmentNode() : nullptr;
    m_lastPosition = event->position();
    return m_curViewFragmentNode != nullptr;
}

Camera* ZoomCmd::onHeldCamera() const
{
    return cameraOf(m_curViewFragmentNode.get());
}

bool ZoomCmd::onMove(Camera& camera, MouseEvent* event)
{
    const int dy = event->position().y - m_lastPosition.y;
    camera.zoom(1.0 - dy * kZoomOfOnePixel);
    m_lastPosition = event->position();
    return true;
}

void ZoomCmd::onLetGo()
{
    m_curViewFragmentNode = nullptr;
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
