#include "UI/Commands/Camera/PanCmd.h"

#include "Server/Scene/Camera.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SceneEvaluator.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/ToolMouse.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Vs::Scene::RawHitInfo;
using Vs::Scene::ViewFragmentTransformer;

constinit const CommandRow PanCmdDef::kRow = {
    .key = L"PanCommand", .title = "Pan", .icon = &Resources::Pan, .arguments = {L"Passive"}};

PanCmd::PanCmd(PanCmdDef* definition, CommandContext* context)
    : Implements(definition, context, Resources::PanCursor())
{
}

int PanCmd::onDragButton() const
{
    return isPassive() ? kMiddleButton : kLeftButton;
}

const RawHitInfo* PanCmd::held() const
{
    return m_grabSelection ? m_grabSelection->hitInfo() : nullptr;
}

Vs::Scene::Camera* PanCmd::onHeldCamera() const
{
    const RawHitInfo* hit = held();
    return hit ? cameraOf(hit->viewFragmentNode()) : nullptr;
}

bool PanCmd::onTakeHold(MouseEvent* event)
{
    if (event->modifierMask() == kShiftModifier)
        return false;
    SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
    Vs::Scene::SceneSelection* selection = evaluator ? evaluator->sceneSelection(true) : nullptr;
    const RawHitInfo* hit = selection ? selection->hitInfo() : nullptr;
    if (!hit)
        return false;
    const ViewFragmentTransformer& transformer = hit->viewFragmentTransformer();
    if (!transformer.modelToScreen(hit->localRayPoint(), m_grabScreen, hit->localToWorldTransform()) ||
        !transformer.screenToWorld(m_grabScreen, m_grabWorld))
        return false;
    m_grabSelection = selection;
    return true;
}

// The transformer stays that of the press, and so gives the whole way of the pointer in the depth of what was
// grabbed; the camera goes the part of it that is new.
bool PanCmd::onMove(Vs::Scene::Camera& camera, MouseEvent* event)
{
    const RawHitInfo* hit = held();
    GkPoint3d screen;
    const GraphicsView* view = graphicsViewOf(hit->viewNode());
    if (const GraphicsCanvas* canvas = view ? view->canvas() : nullptr)
        screen = {double(event->position().x), double(canvas->height() - event->position().y), 0};
    screen.z = m_grabScreen.z;
    GkPoint3d world;
    if (!hit->viewFragmentTransformer().screenToWorld(screen, world))
        return false;
    camera.dolly(m_grabWorld - world);
    m_grabWorld = world;
    return true;
}

void PanCmd::onLetGo()
{
    m_grabSelection = nullptr;
}

} // namespace Vu::Commands
