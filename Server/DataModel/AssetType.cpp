#include "Server/DataModel/AssetType.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetEvents.h"

#include <algorithm>
#include <tuple>

namespace Vs {

namespace {

const AssetTypeSerializableObjectFactory assetTypeFactory;

} // namespace

std::wstring AssetType::serialize() const
{
    return Strings::widen(m_identifier);
}

std::string AssetType::factoryName() const
{
    return AssetTypeSerializableObjectFactory::kName;
}

SerializableObject* AssetTypeSerializableObjectFactory::deserialize(const std::wstring& text, bool)
{
    return AssetTypeMgr::get()->assetType(Strings::narrow(text));
}

AssetTypeMgr* AssetTypeMgr::get()
{
    static AssetTypeMgr manager;
    return &manager;
}

AssetType* AssetTypeMgr::assetType(unsigned index) const
{
    return index < m_types.size() ? m_types[index] : nullptr;
}

AssetType* AssetTypeMgr::assetType(const std::string& identifier) const
{
    const auto found = std::find_if(m_types.begin(), m_types.end(),
                                    [&](const AssetType* type) { return type->identifier() == identifier; });
    return found == m_types.end() ? nullptr : *found;
}

bool AssetTypeMgr::registerType(AssetType* type)
{
    assertMainThread();
    require(type != nullptr, "a type that is registered is there");
    if (type->identifier().empty() || assetType(type->identifier()))
        return false;
    m_types.push_back(type);
    // A line names a type by an identifier that must be known already, so that no line makes new ones.
    std::ignore = UniqueString::find(type->identifier());
    AssetTypeEvent event(type);
    AssetEventSource::get()->fireAssetTypeRegistered(&event);
    return true;
}

void AssetTypeMgr::unregisterType(AssetType* type)
{
    assertMainThread();
    if (std::erase(m_types, type) == 0)
        return;
    AssetTypeEvent event(type);
    AssetEventSource::get()->fireAssetTypeUnregistered(&event);
}

} // namespace Vs
