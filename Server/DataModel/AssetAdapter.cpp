#include "Server/DataModel/AssetAdapter.h"

#include "Server/Base/Require.h"

#include <utility>
#include <vector>

namespace Vs {

namespace {

std::vector<std::pair<int, AssetAdapter::Factory>>& factories()
{
    static std::vector<std::pair<int, AssetAdapter::Factory>> list;
    return list;
}

} // namespace

int AssetAdapter::addFactory(Factory factory)
{
    assertMainThread();
    require(factory != nullptr, "a factory of adapters is there");
    static int last = 0;
    factories().emplace_back(++last, std::move(factory));
    return last;
}

void AssetAdapter::removeFactory(int number)
{
    assertMainThread();
    std::erase_if(factories(), [&](const auto& entry) { return entry.first == number; });
}

std::unique_ptr<AssetAdapter> AssetAdapter::make(Asset* asset)
{
    for (auto entry = factories().rbegin(); entry != factories().rend(); ++entry)
        if (auto adapter = entry->second(asset))
            return adapter;
    return nullptr;
}

} // namespace Vs
