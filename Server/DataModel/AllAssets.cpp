#include "Server/DataModel/AllAssets.h"

#include "Server/DataModel/Document.h"

namespace Vs {

std::vector<Asset*> allAssets(const Document& document)
{
    std::vector<Asset*> all;
    for (unsigned i = 0; i < document.assets(); ++i)
        all.push_back(document.asset(i));
    for (unsigned i = 0; i < document.hiddenAssets(); ++i)
        all.push_back(document.hiddenAsset(i));
    return all;
}

} // namespace Vs
