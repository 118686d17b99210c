#include "UI/Base/Session/ActiveAssetUtils.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/Session/SessionMgr.h"

namespace Vu {

GraphicsView* ActiveAssetUtils::graphicsView()
{
    return SceneUtilities::getActiveAssetGraphicView();
}

AssetSession* ActiveAssetUtils::assetSession()
{
    return SessionMgr::get()->activeAssetSession();
}

Vs::SelectionMgr* ActiveAssetUtils::selectionManager()
{
    const AssetSession* session = assetSession();
    return session ? session->selectionManager() : nullptr;
}

Vs::SelectionSet* ActiveAssetUtils::selectionSet()
{
    Vs::SelectionMgr* manager = selectionManager();
    return manager ? &manager->selectionSet() : nullptr;
}

Vs::SelectionSet* ActiveAssetUtils::highlightSet()
{
    Vs::SelectionMgr* manager = selectionManager();
    return manager ? &manager->highlightSet() : nullptr;
}

Vs::Asset* ActiveAssetUtils::asset()
{
    const AssetSession* session = assetSession();
    return session ? session->asset() : nullptr;
}

Vs::AssetSettings* ActiveAssetUtils::assetSettings()
{
    const Vs::Asset* active = asset();
    Vs::AssetAdapter* adapter = active ? active->adapter() : nullptr;
    return adapter ? adapter->assetSettings() : nullptr;
}

Vs::Units::Unit ActiveAssetUtils::makeLengthUnit()
{
    return Vs::Units::Unit::display(Vs::Units::Quantity::Length);
}

const Vs::Units::Unit* ActiveAssetUtils::findSimpleLengthUnit()
{
    static const Vs::Units::Unit unit = Vs::Units::Unit::base(Vs::Units::Quantity::Length);
    return &unit;
}

} // namespace Vu
