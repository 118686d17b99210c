#pragma once

namespace Vu {

class GraphicsCanvas;
class GraphicsView;

namespace SceneUtilities {

/// The view of the active asset session that has the user's attention, or its first one; null if there is
/// none.
GraphicsView* getActiveAssetGraphicView();
/// The canvas that shows it; the active canvas, or null, if no asset is active.
GraphicsCanvas* getActiveGraphicsCanvas();

} // namespace SceneUtilities
} // namespace Vu
