#pragma once

#include "Server/Scene/HitInfo.h"

namespace Vs {
class CursorResource;
}

namespace Vu {
class AssetSession;
class CommandBase;
} // namespace Vu

namespace Vu::Commands {

/// Mouse handling shared by the camera tools.

/// The pointer over the canvases while the command is active.
void showToolCursor(const CommandBase& command, Vs::CursorResource* cursor);

/// Brings the window of the active canvas to the front if the pointer is over that canvas, so that a tool
/// works as soon as the pointer is where it works.
void activateCanvasUnderPointer();

/// Announce that the user moves a camera by hand, and that this has ended.
void startCameraInteraction(AssetSession* session);
void endCameraInteraction(AssetSession* session);

/// Records where the camera is, where single steps are recorded.
void recordCameraStep(Vs::Scene::Camera* camera);
/// One step of a drag was made: it is recorded like that, and drawn.
void cameraStepMade(Vs::Scene::Camera* camera);
/// The drag is over: the camera's final place is recorded.
void cameraDragMade(Vs::Scene::Camera* camera);

/// The camera of a fragment's node; null if the node is null.
Vs::Scene::Camera* cameraOf(const Rendra::Graphics::GroupNode* fragmentNode);

} // namespace Vu::Commands
