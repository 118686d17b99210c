#include "UI/Commands/Camera/PassiveCameraCmdAgent.h"

#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Camera/FitCmd.h"
#include "UI/Commands/Camera/OrbitCmd.h"
#include "UI/Commands/Camera/PanCmd.h"
#include "UI/Commands/Camera/ZoomCmd.h"

#include <tuple>

namespace Vu::Commands {
namespace {

CommandContext canvasContext()
{
    CommandContext context = CameraCmdDef::passiveContext();
    context.accessPoint(ECommandAccessPoint::Canvas);
    return context;
}

} // namespace

PassiveCameraCmdAgent* PassiveCameraCmdAgent::get()
{
    static PassiveCameraCmdAgent agent;
    return &agent;
}

PassiveCameraCmdAgent::PassiveCameraCmdAgent()
{
    m_subscriptions.add(MouseEventSource::get(), this);
}

// The command's answer is ignored: whoever presses a button in passing wants no message.
void PassiveCameraCmdAgent::start(CommandDefinition* definition)
{
    CommandMgr* manager = CommandMgr::getActiveCommandManager();
    if (!manager || !definition)
        return;
    if (AssetSession* session = SessionMgr::get()->activeAssetSession())
        session->selectionManager()->highlightSet().clear();
    std::ignore = manager->executeCommand(definition, canvasContext());
    m_passiveCommand = manager->activeCommand();
}

// Modifiers are compared as a whole: Shift with another one is not Shift.
void PassiveCameraCmdAgent::mouseDown(MouseEvent* event)
{
    m_passiveCommand = nullptr;
    const bool shift = event->modifierMask() == kShiftModifier;
    if (event->button() == kMiddleButton && !shift) {
        m_panHeld = true;
        start(CommandDefinitionMgr::get()->findCommandDefinitionById(PanCmdDef::info()->key()));
    } else if (event->button() == kRightButton || (event->button() == kMiddleButton && shift)) {
        m_orbitHeld = false;
        start(OrbitCmdDef::usedOrbitCommandDefinition());
    }
}

void PassiveCameraCmdAgent::mouseDoubleClick(MouseEvent* event)
{
    if (event->button() != kMiddleButton && event->modifierMask() != kAltModifier)
        return;
    if (CommandMgr* manager = CommandMgr::getActiveCommandManager())
        std::ignore = manager->executeCommand(FitCmdDef::info()->key(), canvasContext());
}

void PassiveCameraCmdAgent::mouseUp(MouseEvent* event)
{
    if (event->button() != kMiddleButton && event->button() != kRightButton)
        return;
    m_panHeld = false;
    m_orbitHeld = false;
    const CommandMgr* manager = CommandMgr::getActiveCommandManager();
    CommandBase* active = manager ? manager->activeCommand() : nullptr;
    if (!active || active != m_passiveCommand)
        return;
    // Its own subscription comes too late: the command goes with this event.
    if (auto* orbit = Vs::cast<OrbitCmd>(active))
        orbit->mouseUp(event);
    active->destroy(ETerminationReason::Commit);
}

void PassiveCameraCmdAgent::mouseScroll(MouseEvent* event)
{
    const bool modified = event->modifierMask() != kNoModifier;
    if ((m_orbitHeld && modified) || (m_panHeld && !modified))
        return;
    ZoomCmd::zoomByScroll(event);
}

} // namespace Vu::Commands
