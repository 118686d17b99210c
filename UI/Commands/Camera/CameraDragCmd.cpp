#include "UI/Commands/Camera/CameraDragCmd.h"

#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ToolMouse.h"

#include <utility>

namespace Vu::Commands {

CameraDragCmd::CameraDragCmd(CameraCmdDef* definition, CommandContext* context, Vs::CursorResource* cursor)
    : Implements(definition, context), m_passive(CameraCmdDef::passive(context))
{
    // Only tools that were chosen can be repeated.
    repeatable(!m_passive);
    showToolCursor(*this, cursor);
}

CameraDragCmd::~CameraDragCmd()
{
    MouseEventSource::get()->unsubscribe(this);
}

void CameraDragCmd::onActivate()
{
    Implements::onActivate();
    MouseEventSource::get()->subscribe(this);
    // The release of a drag that another button broke off may have come meanwhile.
    if (!MouseEventSource::get()->isHeld(kLeftButton))
        m_pendingClicks = 0;
}

void CameraDragCmd::onDeactivate()
{
    MouseEventSource::get()->unsubscribe(this);
    if (letGo())
        m_pendingClicks = 1;
    Implements::onDeactivate();
}

int CameraDragCmd::onDragButton() const
{
    return kLeftButton;
}

void CameraDragCmd::mouseMove(MouseEvent*)
{
    if (!m_passive)
        activateCanvasUnderPointer();
}

void CameraDragCmd::mouseDragBegin(MouseEvent* event)
{
    if (event->button() != onDragButton() || !onTakeHold(event))
        return;
    m_holding = true;
    startCameraInteraction(assetSession());
    WorkspaceWindow::invalidate(kInvalidateAll);
}

void CameraDragCmd::mouseDrag(MouseEvent* event)
{
    Vs::Scene::Camera* camera = m_holding ? onHeldCamera() : nullptr;
    if (camera && onMove(*camera, event))
        cameraStepMade(camera);
}

void CameraDragCmd::mouseDragEnd(MouseEvent* event)
{
    if (m_holding)
        cameraDragMade(onHeldCamera());
    if (event->button() == onDragButton())
        letGo();
    m_pendingClicks = 1;
}

void CameraDragCmd::mouseUp(MouseEvent* event)
{
    if (event->button() == kLeftButton && m_pendingClicks-- == 0)
        terminateCommand();
}

bool CameraDragCmd::letGo()
{
    if (!std::exchange(m_holding, false))
        return false;
    onLetGo();
    endCameraInteraction(assetSession());
    return true;
}

} // namespace Vu::Commands
