#pragma once

namespace Vs {
class Asset;
class AssetSettings;
} // namespace Vs

namespace Vu {

class GraphicsView;

namespace ActiveAssetUtils {
/// The view of the active asset session that has the user's attention; null if there is none.
GraphicsView* graphicsView();
/// The asset of the active session; null if there is none.
Vs::Asset* asset();
/// The settings of that asset; null if there is none, or it has none.
Vs::AssetSettings* assetSettings();
} // namespace ActiveAssetUtils

} // namespace Vu
