#include "UI/Design/VeloraTypes.h"

#include "Server/DataModel/DocumentMgr.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {

VeloraDocType::VeloraDocType()
    : Implements(kIdentifier, localized("VeloraDocType", "Quillet Design"), L".vlra")
{
    Vs::DocumentMgr::get()->registerDocumentType(this);
}

VeloraDocType::~VeloraDocType()
{
    Vs::DocumentMgr::get()->unregisterDocumentType(this);
}

VeloraAssetType::VeloraAssetType()
    : Implements(kIdentifier, localized("VeloraAssetType", "Design"), VeloraDocType::kIdentifier)
{
    Vs::AssetTypeMgr::get()->registerType(this);
}

VeloraAssetType::~VeloraAssetType()
{
    Vs::AssetTypeMgr::get()->unregisterType(this);
}

} // namespace Vu::Design
