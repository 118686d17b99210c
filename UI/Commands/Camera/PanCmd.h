#pragma once

#include "Server/Geometry/GkPoint3d.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vs::Scene {
class SceneSelection;
}

namespace Vu::Commands {

class PanCmd;

/// Moves the view with the mouse.
class PanCmdDef : public CommandRowDefinition<PanCmdDef, PanCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;
};

/// Keeps the point that was grabbed under the pointer. A click without a drag ends the tool.
class PanCmd : public Vs::Implements<PanCmd, CameraCmd>, public MouseEventSite
{
public:
    PanCmd(PanCmdDef* definition, CommandContext* context);
    ~PanCmd() override;

    void mouseMove(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    void mouseDragBegin(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseDragEnd(MouseEvent* event) override;

    void onActivate() override;
    void onDeactivate() override;

private:
    int expectedButton() const;

    GkPoint3d m_grabScreen; ///< With its depth.
    GkPoint3d m_grabWorld;  ///< Under the pointer at the last step, as the camera stood at the press.
    Vs::StrongRef<Vs::Scene::SceneSelection> m_grabSelection; ///< What the press hit; null outside of a drag.
    int m_pendingClicks = 0; ///< Releases that are no clicks, because they end a drag.
    bool m_subscribed = false;
    bool m_passive;
};

} // namespace Vu::Commands
