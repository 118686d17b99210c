#pragma once

#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/Camera/CameraCmd.h"

namespace Vs {
class CursorResource;
}

namespace Vs::Scene {
class Camera;
}

namespace Vu::Commands {

/// Base of the tools that grab something in the view and move the camera while the mouse is dragged: when
/// they listen, which canvas they raise, whom they notify of the movement, and that a click without a drag
/// ends them.
class CameraDragCmd : public Vs::Implements<CameraDragCmd, CameraCmd>, public MouseEventSite
{
public:
    ~CameraDragCmd() override;

    void mouseMove(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    void mouseDragBegin(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseDragEnd(MouseEvent* event) override;

    void onActivate() override;
    void onDeactivate() override;

protected:
    CameraDragCmd(CameraCmdDef* definition, CommandContext* context, Vs::CursorResource* cursor);

    /// Started in passing, over another command.
    bool isPassive() const { return m_passive; }

    /// With which button a drag moves the camera. Default: the left one.
    virtual int onDragButton() const;
    /// Grabs what is under the pointer; false if nothing is, or the modifier keys mean something else.
    virtual bool onTakeHold(MouseEvent* event) = 0;
    /// The camera of what is grabbed; null if it is gone.
    virtual Vs::Scene::Camera* onHeldCamera() const = 0;
    /// Moves the camera of what is grabbed as far as the pointer has moved since the last step; false if it
    /// can't.
    virtual bool onMove(Vs::Scene::Camera& camera, MouseEvent* event) = 0;
    virtual void onLetGo() = 0;

private:
    bool letGo();

    bool m_holding = false;  ///< In a drag that the tool has taken up.
    int m_pendingClicks = 0; ///< Releases that are no clicks, because they end a drag.
    bool m_passive;
};

} // namespace Vu::Commands
