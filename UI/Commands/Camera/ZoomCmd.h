#pragma once

#include "Server/Base/Point2.h"
#include "Server/Scene/Node.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vu::Commands {

class ZoomCmd;

/// Changes the scale of the view with the mouse.
class ZoomCmdDef : public CommandRowDefinition<ZoomCmdDef, ZoomCmd, CameraCmdDef>
{
public:
    static const CommandRow kRow;
};

/// Zooms as the mouse goes up and down. A click without a drag ends the tool.
class ZoomCmd : public Vs::Implements<ZoomCmd, CameraCmd>, public MouseEventSite
{
public:
    ZoomCmd(ZoomCmdDef* definition, CommandContext* context);
    ~ZoomCmd() override;

    /// Zooms by a turn of the wheel about what lies under the pointer, whatever command is active. Null is
    /// ignored.
    static void zoomByScroll(MouseEvent* event);

    void mouseMove(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    void mouseDragBegin(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseDragEnd(MouseEvent* event) override;

    void onActivate() override;
    void onDeactivate() override;

private:
    Vs::Point2 m_lastPosition;
    Vs::StrongRef<Rendra::Graphics::GroupNode>
        m_curViewFragmentNode; ///< What is zoomed; null outside of a drag.
    int m_pendingClicks = 0;   ///< Releases that are no clicks, because they end a drag.
    bool m_passive;
};

} // namespace Vu::Commands
