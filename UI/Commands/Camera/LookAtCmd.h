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

/// Turns the camera to face a picked place straight on.
class LookAtCmdDef : public RowDefinition<LookAtCmdDef, CameraCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// What Look At accepts; add-ins may add rules to it. Lives as long as the process.
Vs::CompositeSelectionFilter* lookAtFilter();

/// Waits for one selection, faces it from the distance that the camera had to its target, and ends.
class LookAtCmd : public Vs::Implements<LookAtCmd, CameraCmd>, public CommandInputSetEventSite
{
public:
    ~LookAtCmd() override;

    void onActivate() override;
    void onDeactivate() override;
    void commandInputSetExecute(CommandInputEvent* event) override;

protected:
    friend class LookAtCmdDef;
    LookAtCmd(LookAtCmdDef* definition, CommandContext* context);

private:
    void onExecute();
    void glideTo(const Vs::Scene::RawHitInfo& hit, GraphicsView* view);

    SelectionCommandInput* m_facesInput; ///< Owned by the command's inputs.
};

} // namespace Vu::Commands
