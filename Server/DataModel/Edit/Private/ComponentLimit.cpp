#include "Server/DataModel/Edit/Private/ComponentLimit.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"

#include <cstdint>

namespace Vs {

namespace {

constexpr uint64_t kMostComponents = 10'000'000; // as many as are read of a file

uint64_t countFrom(const Component& component)
{
    uint64_t count = 1;
    for (const auto& child : component.children)
        count += countFrom(*child);
    return count;
}

/// Components that are gone are reported elsewhere.
template <class Times>
uint64_t sumOf(const Asset& asset, const std::vector<std::string>& components, const Times& times)
{
    uint64_t sum = 0;
    for (const std::string& id : components)
        if (const Component* component = asset.findComponent(id))
            sum += countFrom(*component) * times(*component);
    return sum;
}

std::wstring whyTooMany(const Asset& target, uint64_t added)
{
    return target.data().componentCount() + added > kMostComponents
               ? DataModel::localizedFormat("EditTooManyShown",
                                            "there would be more than the %1% components that can be shown.",
                                            kMostComponents)
               : std::wstring();
}

} // namespace

std::wstring whyTooMany(const Asset& source, const std::vector<std::string>& components, size_t copies)
{
    return whyTooMany(source, sumOf(source, components, [&](const Component& component) {
                          return copies * source.data().occurrencesOf(component);
                      }));
}

std::wstring whyTooMany(const Asset& source, const std::vector<std::string>& components, const Asset& target)
{
    return whyTooMany(target, sumOf(source, components, [](const Component&) { return size_t(1); }));
}

} // namespace Vs
