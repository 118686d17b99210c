#include "Server/DataModel/Recovery/Private/QuietDocument.h"

#include "Server/DataModel/AllAssets.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Model/ModelData.h"

#include <algorithm>

namespace Vs::Recovery {

bool isFree(const Document& document)
{
    const std::vector<Asset*> assets = allAssets(document);
    return std::none_of(assets.begin(), assets.end(), [](const Asset* asset) {
        return asset->data().history().isOpen() || asset->data().history().group();
    });
}

KernelHolds::KernelHolds(const Document& document)
{
    for (const Asset* asset : allAssets(document)) {
        if (!m_all || asset->data().isEmpty() || asset->data().stored())
            continue;
        m_holds.push_back(asset->data().source().tryHold());
        m_all = static_cast<bool>(m_holds.back());
    }
}

} // namespace Vs::Recovery
