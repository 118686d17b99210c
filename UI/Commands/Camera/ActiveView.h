#pragma once

#include "Server/Base/StrongRef.h"

#include <string>

namespace Vs::Scene {
class Camera;
class ViewFragment;
} // namespace Vs::Scene

namespace Rendra::Graphics {
class GroupNode;
}

namespace Vu {
class AssetSession;
class GraphicsView;
} // namespace Vu

namespace Vu::Commands {

/// The session's graphics view; null if there is no session or it has none.
GraphicsView* graphicsViewOf(AssetSession* session);

/// The view that made a scene's view node; null if the node is null or the view has gone.
GraphicsView* graphicsViewOf(const Rendra::Graphics::GroupNode* viewNode);

/// The view's first fragment, which is the one that commands work on; null if it shows nothing.
Vs::Scene::ViewFragment* firstFragment(GraphicsView* view);

/// The view's fragment of that name; null if there is none, or no view.
Vs::Scene::ViewFragment* fragmentNamed(GraphicsView* view, const std::string& name);

/// The camera of the active session's view; null if there is none.
Vs::Scene::Camera* activeCamera();

/// The same, after finishing a glide that still plays: for what reads or sets the camera at once, and would
/// be undone by the rest of the glide.
Vs::Scene::Camera* settledCamera();

} // namespace Vu::Commands
