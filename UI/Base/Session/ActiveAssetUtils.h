#pragma once

#include "Server/Types/Units/Unit.h"

namespace Vs {
class Asset;
class AssetSettings;
class SelectionMgr;
class SelectionSet;
} // namespace Vs

namespace Vu {

class AssetSession;
class GraphicsView;

namespace ActiveAssetUtils {
/// The active view of the active asset session; null if there is none.
GraphicsView* graphicsView();
/// The active session; null if there is none.
AssetSession* assetSession();
/// What is selected and highlighted in the active session, and each of the two; null if none is active.
Vs::SelectionMgr* selectionManager();
Vs::SelectionSet* selectionSet();
Vs::SelectionSet* highlightSet();
/// The asset of the active session; null if there is none.
Vs::Asset* asset();
/// The settings of that asset; null if there is none, or it has none.
Vs::AssetSettings* assetSettings();
/// The unit in which the user sees the lengths of the active asset.
Vs::Units::Unit makeLengthUnit();
/// The unit in which lengths are kept with the document, whatever the user sees: the base unit. Never null.
const Vs::Units::Unit* findSimpleLengthUnit();
} // namespace ActiveAssetUtils

} // namespace Vu
