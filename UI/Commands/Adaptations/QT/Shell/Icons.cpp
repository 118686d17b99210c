#include "UI/Commands/Adaptations/QT/Shell/Icons.h"

#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Commands/Resources.h"

#include <boost/algorithm/string/predicate.hpp>

namespace Vu::Commands {

QIcon iconOfDocumentType(const std::string& identifier)
{
    const Vs::AssetTypeMgr* types = Vs::AssetTypeMgr::get();
    for (unsigned i = 0; i < types->assetTypes(); ++i)
        if (types->assetType(i)->defaultDocType() == identifier && types->assetType(i)->icon())
            return iconOf(types->assetType(i)->icon());
    return iconOf(Resources::RecentFile());
}

QIcon iconOfFile(const std::wstring& path)
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < documents->documentTypes(); ++i)
        if (boost::algorithm::iends_with(path, documents->documentType(i)->extension()))
            return iconOfDocumentType(documents->documentType(i)->identifier());
    return iconOf(Resources::RecentFile());
}

} // namespace Vu::Commands
