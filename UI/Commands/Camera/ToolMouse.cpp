#include "UI/Commands/Camera/ToolMouse.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/CursorController.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/InteractionEvents.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu::Commands {

void showToolCursor(const CommandBase& command, Vs::CursorResource* cursor)
{
    if (CursorController* controller = command.cursorController())
        controller->cursor(cursor);
}

void activateCanvasUnderPointer()
{
    GraphicsCanvas* canvas = SceneUtilities::getActiveGraphicsCanvas();
    if (canvas && canvas->underPointer())
        canvas->activateWindow();
}

void startCameraInteraction(AssetSession* session)
{
    InteractionEvent event(session, EInteraction::CameraChange);
    InteractionEventSource::get()->fireStartInteraction(&event);
}

void endCameraInteraction(AssetSession* session)
{
    InteractionEvent event(session, EInteraction::CameraChange);
    InteractionEventSource::get()->fireEndInteraction(&event);
}

void recordCameraStep(Vs::Scene::Camera* camera)
{
    if (Vs::TranscriptMgr::get()->recordSmoothCameraChange())
        const TranscriptCameraTrigger trigger(camera);
}

void cameraStepMade(Vs::Scene::Camera* camera)
{
    recordCameraStep(camera);
    WorkspaceWindow::invalidate(kInvalidateAll);
}

void cameraDragMade(Vs::Scene::Camera* camera)
{
    const TranscriptCameraTrigger trigger(camera);
    WorkspaceWindow::invalidate(kInvalidateAll);
}

Vs::Scene::Camera* cameraOf(const Rendra::Graphics::GroupNode* fragmentNode)
{
    const Vs::Scene::ViewFragmentNodeData* data = Vs::Scene::viewFragmentNodeData(fragmentNode);
    return data ? data->camera() : nullptr;
}

} // namespace Vu::Commands
