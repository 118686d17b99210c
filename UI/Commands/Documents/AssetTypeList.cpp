#include "UI/Commands/Documents/AssetTypeList.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"

namespace Vu::Commands {

ListControl* AssetTypeList::control(Info* info, IListControlHandler* handler)
{
    if (!m_list.control()) {
        m_list.make(info, handler);
        const Vs::AssetTypeMgr* types = Vs::AssetTypeMgr::get();
        for (unsigned i = 0; i < types->assetTypes(); ++i)
            update(types->assetType(i), true);
    }
    return m_list.control();
}

void AssetTypeList::update(Vs::AssetType* type, bool add)
{
    if (!m_list.control() || type->isBuiltIn() || type->isHidden())
        return;
    const std::wstring key = Vs::Strings::widen(type->identifier());
    if (add == m_list.has(key))
        return;
    OwnedList::Items items;
    for (const auto& item : m_list.items())
        if (item->key() != key)
            items.push_back(std::make_unique<Info>(*item));
    if (add)
        items.push_back(std::make_unique<Info>(key, type->name(), type->icon()));
    m_list.items(std::move(items));
}

} // namespace Vu::Commands
