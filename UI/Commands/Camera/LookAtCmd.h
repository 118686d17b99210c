#pragma once

#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vs {
class CompositeSelectionFilter;
class Selection;
namespace Scene {
class RawHitInfo;
class ViewFragment;
} // namespace Scene
} // namespace Vs

namespace Vu {
class SelectionCommandInput;
}

namespace Vu::Commands {

class LookAtCmd;

/// Turns the camera to face a picked place straight on.
class LookAtCmdDef : public CommandRowDefinition<LookAtCmdDef, LookAtCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;
};

/// What Look At accepts; add-ins may add rules to it. Lives as long as the process.
Vs::CompositeSelectionFilter* lookAtFilter();

/// Waits for one selection, faces it from the distance that the camera had to its target, and ends.
class LookAtCmd : public Vs::Implements<LookAtCmd, CameraCmd>, public CommandInputSetEventSite
{
public:
    LookAtCmd(LookAtCmdDef* definition, CommandContext* context);
    ~LookAtCmd() override;

    void onActivate() override;
    void onPostActivate() override;
    void onDeactivate() override;
    void commandInputSetExecute(CommandInputEvent* event) override;

private:
    void onExecute();
    void glideTo(const Vs::Scene::RawHitInfo& hit, GraphicsView* view);

    SelectionCommandInput* m_facesInput; ///< Owned by the command's inputs.
};

} // namespace Vu::Commands
