#pragma once

#include "Server/Base/Point2.h"
#include "Server/Scene/Node.h"
#include "UI/Commands/Camera/CameraDragCmd.h"

namespace Vu::Commands {

class ZoomCmd;

/// Changes the scale of the view with the mouse.
class ZoomCmdDef : public CommandRowDefinition<ZoomCmdDef, ZoomCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;
};

/// Zooms as the mouse goes up and down. A click without a drag ends the tool.
class ZoomCmd : public Vs::Implements<ZoomCmd, CameraDragCmd>
{
public:
    ZoomCmd(ZoomCmdDef* definition, CommandContext* context);

    /// Zooms by a turn of the wheel about what lies under the pointer, whatever command is active. Null is
    /// ignored.
    static void zoomByScroll(MouseEvent* event);

protected:
    bool onTakeHold(MouseEvent* event) override;
    Vs::Scene::Camera* onHeldCamera() const override;
    bool onMove(Vs::Scene::Camera& camera, MouseEvent* event) override;
    void onLetGo() override;

private:
    Vs::Point2 m_lastPosition;
    Vs::StrongRef<Rendra::Graphics::GroupNode>
        m_curViewFragmentNode; ///< What is zoomed; null outside of a drag.
};

} // namespace Vu::Commands
