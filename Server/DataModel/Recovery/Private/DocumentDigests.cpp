#include "Server/DataModel/Recovery/Private/DocumentDigests.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/ModelDigest.h"

namespace Vs::Recovery {

std::vector<std::string> digestsOf(const Document& document)
{
    BodyDigests bodies;
    return digestsOf(document, bodies);
}

std::vector<std::string> digestsOf(const Document& document, BodyDigests& bodies)
{
    std::vector<std::string> digests;
    for (unsigned i = 0; i < document.assets(); ++i)
        digests.push_back(std::to_string(modelDigest(*document.asset(i), bodies)));
    for (unsigned i = 0; i < document.hiddenAssets(); ++i)
        digests.push_back(std::to_string(modelDigest(*document.hiddenAsset(i), bodies)));
    return digests;
}

} // namespace Vs::Recovery
