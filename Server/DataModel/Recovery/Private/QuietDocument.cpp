#include "Server/DataModel/Recovery/Private/QuietDocument.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"

#include <algorithm>

namespace Vs::Recovery {

std::vector<Asset*> assetsOf(const Document& document)
{
    std::vector<Asset*> assets;
    for (unsigned i = 0; i < document.assets(); ++i)
        assets.push_back(document.asset(i));
    for (unsigned i = 0; i < document.hiddenAssets(); ++i)
        assets.push_back(document.hiddenAsset(i));
    return assets;
}

bool isFree(const Document& document)
{
    const std::vector<Asset*> assets = assetsOf(document);
    return std::none_of(assets.begin(), assets.end(), [](const Asset* asset) {
        return asset->data().history().isOpen() || asset->data().history().group();
    });
}

KernelHolds::KernelHolds(const Document& document)
{
    for (const Asset* asset : assetsOf(document)) {
        if (!m_all || asset->data().isEmpty() || asset->data().stored())
            continue;
        m_holds.push_back(asset->data().source().tryHold());
        m_all = static_cast<bool>(m_holds.back());
    }
}

} // namespace Vs::Recovery
