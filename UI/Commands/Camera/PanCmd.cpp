#include "UI/Commands/Camera/PanCmd.h"

#include "Server/Scene/Camera.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SceneEvaluator.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/ToolMouse.h"
#include "UI/Commands/Resources.h"

#include <utility>

namespace Vu::Commands {

using Vs::Scene::RawHitInfo;
using Vs::Scene::ViewFragmentTransformer;

constinit const CommandRow PanCmdDef::kRow = {.key = L"PanCommand", .title = "Pan", .icon = &Resources::Pan};

PanCmd::PanCmd(PanCmdDef* definition, CommandContext* context)
    : Implements(definition, context), m_passive(CameraCmdDef::passive(context))
{
    // Repeating is for tools that were chosen.
    repeatable(!m_passive);
    showToolCursor(*this, Resources::PanCursor());
}

PanCmd::~PanCmd()
{
    MouseEventSource::get()->unsubscribe(this);
}

void PanCmd::onActivate()
{
    Implements::onActivate();
    if (!m_subscribed)
        MouseEventSource::get()->subscribe(this);
    m_subscribed = true;
    // The release of a drag that another button broke off may have come meanwhile.
    if (!MouseEventSource::get()->isHeld(kLeftButton))
        m_pendingClicks = 0;
}

void PanCmd::onDeactivate()
{
    if (m_subscribed)
        MouseEventSource::get()->unsubscribe(this);
    m_subscribed = false;
    if (std::exchange(m_grabSelection, nullptr)) {
        endCameraInteraction(assetSession());
        m_pendingClicks = 1;
    }
    Implements::onDeactivate();
}

int PanCmd::expectedButton() const
{
    return m_passive ? kMiddleButton : kLeftButton;
}

void PanCmd::mouseMove(MouseEvent*)
{
    if (!m_passive)
        activateCanvasUnderPointer();
}

void PanCmd::mouseDragBegin(MouseEvent* event)
{
    if (event->button() != expectedButton() || event->modifierMask() == kShiftModifier)
        return;
    SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
    Vs::Scene::SceneSelection* selection = evaluator ? evaluator->sceneSelection(true) : nullptr;
    const RawHitInfo* hit = selection ? selection->hitInfo() : nullptr;
    if (!hit)
        return;
    const ViewFragmentTransformer& transformer = hit->viewFragmentTransformer();
    if (!transformer.modelToScreen(hit->localRayPoint(), m_grabScreen, hit->localToWorldTransform()) ||
        !transformer.screenToWorld(m_grabScreen, m_grabWorld))
        return;
    m_grabSelection = selection;
    startCameraInteraction(assetSession());
    WorkspaceWindow::invalidate(kInvalidateAll);
}

// The transformer stays that of the press, and so gives the whole way of the pointer in the depth of what was
// grabbed; the camera goes the part of it that is new.
void PanCmd::mouseDrag(MouseEvent* event)
{
    const RawHitInfo* hit = m_grabSelection ? m_grabSelection->hitInfo() : nullptr;
    Vs::Scene::Camera* camera = hit ? cameraOf(hit->viewFragmentNode()) : nullptr;
    if (!camera)
        return;
    GkPoint3d screen;
    const GraphicsView* view = graphicsViewOf(hit->viewNode());
    if (const GraphicsCanvas* canvas = view ? view->canvas() : nullptr)
        screen = {double(event->position().x), double(canvas->height() - event->position().y), 0};
    screen.z = m_grabScreen.z;
    GkPoint3d world;
    if (!hit->viewFragmentTransformer().screenToWorld(screen, world))
        return;
    camera->dolly(m_grabWorld - world);
    m_grabWorld = world;
    cameraStepMade(camera);
}

void PanCmd::mouseDragEnd(MouseEvent* event)
{
    if (const RawHitInfo* hit = m_grabSelection ? m_grabSelection->hitInfo() : nullptr)
        cameraDragMade(cameraOf(hit->viewFragmentNode()));
    if (event->button() == expectedButton()) {
        if (m_grabSelection)
            endCameraInteraction(assetSession());
        m_grabSelection = nullptr;
    }
    m_pendingClicks = 1;
}

void PanCmd::mouseUp(MouseEvent* event)
{
    if (event->button() == kLeftButton && m_pendingClicks-- == 0)
        terminateCommand();
}

} // namespace Vu::Commands
