#include "UI/Commands/Camera/OrbitCmd.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SceneEvaluator.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/CameraPivot.h"
#include "UI/Commands/Camera/ToolMouse.h"
#include "UI/Commands/Resources.h"

#include <cmath>
#include <utility>

namespace Vu::Commands {

using Vs::Scene::Camera;
using Vs::Scene::RawHitInfo;

namespace {

constexpr double kRightAngle = 1.5707963267948966;
constexpr double kHalfTurn = 3.141592653589793;

Vs::Size2 activeCanvasSize()
{
    const GraphicsCanvas* canvas = SceneUtilities::getActiveGraphicsCanvas();
    return canvas ? Vs::Size2{canvas->width(), canvas->height()} : Vs::Size2();
}

/// The place under the pointer at the depth of the target: the background has none of its own.
bool backgroundPoint(const Camera& camera, const RawHitInfo& hit, GkPoint3d& point)
{
    const Vs::Scene::ViewFragmentTransformer& transformer = hit.viewFragmentTransformer();
    GkPoint3d depth, place;
    if (!transformer.cameraToScreen({0, 0, -camera.distance()}, depth) ||
        !transformer.modelToScreen(hit.localRayPoint(), place, hit.localToWorldTransform()))
        return false;
    return transformer.screenToWorld({place.x, place.y, depth.z}, point);
}

} // namespace

OrbitCmd::OrbitCmd(FreeOrbitCmdDef* definition, CommandContext* context, bool constrained)
    : Implements(definition, context), m_passive(CameraCmdDef::passive(context))
{
    showToolCursor(*this, Resources::FreeOrbitCursor());
    m_modes = makeOrbitModes(this, &m_reticle, constrained);
    m_curMode = m_modes[m_curZone].get();
}

OrbitCmd::~OrbitCmd()
{
    MouseEventSource::get()->unsubscribe(this);
}

void OrbitCmd::onActivate()
{
    Implements::onActivate();
    if (!m_subscribed)
        MouseEventSource::get()->subscribe(this);
    m_subscribed = true;
    // A drag that another button broke off ends with its own release, which may have come meanwhile.
    if (!MouseEventSource::get()->isHeld(kLeftButton))
        m_dragging = false;
    if (!m_passive)
        showReticleForCmd();
    OrbitCmdDef::activeInputControl(true);
}

void OrbitCmd::onDeactivate()
{
    m_reticle.hide();
    if (std::exchange(m_interacting, false))
        endCameraInteraction(assetSession());
    if (UIBaseOptionGroup::get()->cameraPivotEnabled()) {
        if (m_passive)
            showCameraPivot(false);
        hideCameraPivotDelayed();
    }
    MouseEventSource::get()->unsubscribe(this);
    m_subscribed = false;
    Implements::onDeactivate();
    OrbitCmdDef::activeInputControl(false);
}

bool OrbitCmd::showReticleForCmd()
{
    m_reticle.show();
    if (GraphicsCanvas* canvas = SceneUtilities::getActiveGraphicsCanvas())
        canvas->invalidate();
    m_lastCanvasSize = activeCanvasSize();
    return m_reticle.shown();
}

bool OrbitCmd::isValidMouseEvent(MouseEvent* event) const
{
    if (event->button() == kMiddleButton && event->modifierMask() == kShiftModifier)
        return true;
    return event->button() == (m_passive ? kRightButton : kLeftButton);
}

void OrbitCmd::mouseMove(MouseEvent* event)
{
    if (m_passive || !m_reticle.shown() || m_dragging)
        return;
    m_curZone = m_reticle.zone(event->position());
    m_curMode = m_modes[m_curZone].get();
    if (!m_curMode)
        return;
    if (GraphicsCanvas* canvas = SceneUtilities::getActiveGraphicsCanvas())
        canvas->activateWindow();
    showToolCursor(*this, m_curMode->cursor());
}

void OrbitCmd::mouseMoveGlobal(MouseEvent*)
{
    if (!m_reticle.shown() || m_dragging)
        return;
    // In a split view the reticle goes where the user went.
    if (activeCanvasSize() == m_lastCanvasSize &&
        m_reticle.view() == SceneUtilities::getActiveAssetGraphicView())
        return;
    m_reticle.hide();
    showReticleForCmd();
}

void OrbitCmd::setCurViewFragmentNode(Rendra::Graphics::GroupNode* node)
{
    if (node && m_curViewFragmentNode != node)
        m_centerPoint = node->boundingBox().centre();
    m_curViewFragmentNode = node;
}

void OrbitCmd::mouseDragBegin(MouseEvent* event)
{
    if (!isValidMouseEvent(event))
        return;
    if (m_passive && UIBaseOptionGroup::get()->cameraPivotEnabled())
        showCameraPivot(true);
    if (SceneEvaluator* evaluator = SceneEvaluator::get(event->position())) {
        setCurViewFragmentNode(evaluator->viewFragmentNode());
        if (const Camera* camera = cameraOf(m_curViewFragmentNode.get())) {
            m_lastPosition = event->position();
            startCameraInteraction(assetSession());
            m_interacting = true;
            if (m_curMode) {
                m_curMode->axis(computeUpForConstrainedOrbit(*camera));
                m_curMode->center(m_centerPoint);
                m_curMode->begin();
            }
            WorkspaceWindow::invalidate(kInvalidateAll);
        }
    }
    m_dragging = true;
}

void OrbitCmd::mouseDrag(MouseEvent* event)
{
    if (Camera* camera = cameraOf(m_curViewFragmentNode.get())) {
        const Vs::Point2 position = event->position();
        const Vs::Size2 delta = position - m_lastPosition;
        // The screen's y grows downwards.
        if (m_curMode)
            m_curMode->orbit(camera, delta.cx, -double(delta.cy), computeDeltaZ(position));
        m_lastPosition = position;
        cameraStepMade(camera);
    }
    m_dragging = true;
}

// The angle that the pointer has swept about the middle of the canvas since the last step.
double OrbitCmd::computeDeltaZ(const Vs::Point2& position) const
{
    const Vs::Size2 size = activeCanvasSize();
    const int middleX = size.cx / 2, middleY = size.cy / 2;
    const auto slope = [&](const Vs::Point2& p) {
        const double across = p.x - middleX, down = p.y - middleY;
        return across == 0 && down == 0 ? 0.0 : std::atan(down / across);
    };
    double swept = slope(position) - slope(m_lastPosition);
    // Whichever way it was wrapped, half a turn is subtracted: that is how this tool feels.
    if (std::abs(swept) > kRightAngle)
        swept -= kHalfTurn;
    return -swept;
}

void OrbitCmd::mouseDragEnd(MouseEvent* event)
{
    if (m_passive && event->modifierMask() != kShiftModifier && event->button() != kRightButton)
        return;
    Camera* camera = cameraOf(m_curViewFragmentNode.get());
    if (!camera)
        return;
    cameraDragMade(camera);
    endCameraInteraction(assetSession());
    m_interacting = false;
    if (m_curMode)
        m_curMode->end();
}

void OrbitCmd::mouseUp(MouseEvent* event)
{
    if (std::exchange(m_dragging, false))
        return;
    const bool passiveClick = m_passive && event->modifierMask() == kShiftModifier &&
                              UIBaseOptionGroup::get()->cameraPivotEnabled();
    if (event->button() != kLeftButton && !passiveClick)
        return;
    if (m_curZone == kOutside) {
        terminateCommand();
        WorkspaceWindow::invalidate(kInvalidateAll);
        return;
    }
    SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
    const Vs::StrongRef<Vs::Scene::SceneSelection> selection =
        evaluator ? evaluator->sceneSelection(true) : nullptr;
    if (!selection)
        return;
    setCurViewFragmentNode(evaluator->viewFragmentNode());
    if (m_curViewFragmentNode && selection->hitInfo())
        bringToMiddle(*selection, *selection->hitInfo());
}

// The camera reaches its final state at once; the transition only animates the way there.
void OrbitCmd::bringToMiddle(const Vs::Scene::SceneSelection& selection, const RawHitInfo& hit)
{
    Camera* camera = cameraOf(m_curViewFragmentNode.get());
    GkPoint3d point;
    if (!selection.scenePath().empty())
        point = hit.localToWorldTransform() * hit.localHitPoint();
    else if (!backgroundPoint(*camera, hit, point))
        return;
    m_centerPoint = point;
    TransitionMgr* transitions = TransitionMgr::get();
    Transition* transition = transitions ? transitions->beginTransition() : nullptr;
    if (!transition)
        return;
    const Vs::Scene::CameraParameters before(*camera);
    camera->dolly(point - camera->target());
    const Vs::Scene::CameraParameters after(*camera);
    transition->add(CameraTransition::make(transition, before, after, camera));
    const TranscriptCameraTrigger trigger(camera);
    transitions->endTransition();
}

} // namespace Vu::Commands
