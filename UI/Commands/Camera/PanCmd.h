#pragma once

#include "Server/Geometry/GkPoint3d.h"
#include "UI/Commands/Camera/CameraDragCmd.h"

namespace Vs::Scene {
class RawHitInfo;
class SceneSelection;
} // namespace Vs::Scene

namespace Vu::Commands {

class PanCmd;

/// Moves the view with the mouse.
class PanCmdDef : public CommandRowDefinition<PanCmdDef, PanCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;
};

/// Keeps the point that was grabbed under the pointer. A click without a drag ends the tool.
class PanCmd : public Vs::Implements<PanCmd, CameraDragCmd>
{
public:
    PanCmd(PanCmdDef* definition, CommandContext* context);

protected:
    int onDragButton() const override;
    bool onTakeHold(MouseEvent* event) override;
    Vs::Scene::Camera* onHeldCamera() const override;
    bool onMove(Vs::Scene::Camera& camera, MouseEvent* event) override;
    void onLetGo() override;

private:
    const Vs::Scene::RawHitInfo* held() const;

    GkPoint3d m_grabScreen; ///< With its depth.
    GkPoint3d m_grabWorld;  ///< Under the pointer at the last step, as the camera stood at the press.
    Vs::StrongRef<Vs::Scene::SceneSelection> m_grabSelection; ///< What the press hit; null outside of a drag.
};

} // namespace Vu::Commands
