#include "Server/DataModel/Recovery/Private/DocumentDigests.h"

#include "Server/DataModel/AllAssets.h"
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
    for (const Asset* asset : allAssets(document))
        digests.push_back(std::to_string(modelDigest(*asset, bodies)));
    return digests;
}

} // namespace Vs::Recovery
