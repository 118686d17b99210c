#include "UI/Commands/Adaptations/QT/Shell/Icons.h"

#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
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

namespace {

const Vs::DocumentType* typeOf(const std::wstring& path)
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < documents->documentTypes(); ++i)
        if (boost::algorithm::iends_with(path, documents->documentType(i)->extension()))
            return documents->documentType(i);
    return nullptr;
}

} // namespace

bool isNative(const std::wstring& path)
{
    return typeOf(path) != nullptr;
}

QIcon iconOfFile(const std::wstring& path)
{
    const Vs::DocumentType* type = typeOf(path);
    return type ? iconOfDocumentType(type->identifier()) : iconOf(Resources::RecentFile());
}

} // namespace Vu::Commands
