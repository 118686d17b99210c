#pragma once

namespace Vu {

class GraphicsView;

namespace ActiveAssetUtils {
/// The view of the active asset session that has the user's attention; null if there is none.
GraphicsView* graphicsView();
} // namespace ActiveAssetUtils

} // namespace Vu
