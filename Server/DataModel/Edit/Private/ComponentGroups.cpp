#include "Server/DataModel/Edit/Private/ComponentGroups.h"

#include "Server/Base/Strings.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"

#include <iterator>
#include <sstream>
#include <unordered_set>
#include <utility>

namespace Vs {

namespace {

constexpr const char* kPrefix = "ComponentGroup.";

/// What the member is called beside a component of its group: in the same occurrence of an assembly.
std::string beside(const std::string& component, const std::string& member)
{
    const std::string parent = parentId(component);
    return parent.empty() ? placeOf(member) : parent + '/' + placeOf(member);
}

} // namespace

ComponentGroups::ComponentGroups(Asset& asset) : m_asset(asset)
{
    const auto& settings = asset.settings();
    for (auto each = settings.lower_bound(kPrefix);
         each != settings.end() && each->first.starts_with(kPrefix); ++each) {
        std::istringstream members(Strings::narrow(each->second));
        take(each->first, {std::istream_iterator<std::string>(members), {}});
    }
}

void ComponentGroups::take(const std::string& key, std::vector<std::string> members)
{
    for (const std::string& member : members)
        m_keys[placeOf(member)] = key;
    m_members[key] = std::move(members);
}

const std::string* ComponentGroups::keyOf(const std::string& component) const
{
    const auto found = m_keys.find(placeOf(component));
    return found == m_keys.end() ? nullptr : &found->second;
}

void ComponentGroups::add(const std::vector<std::string>& components)
{
    if (components.size() < 2)
        return;
    // No place is ever taken again by another component, so the key is the group's alone.
    const std::string key = kPrefix + placeOf(components.front());
    take(key, components);
    keep(key);
}

void ComponentGroups::keep(const std::string& key)
{
    std::string members;
    for (const std::string& component : m_members[key])
        members += (members.empty() ? "" : " ") + component;
    m_asset.setting(key, Strings::widen(members));
}

std::vector<std::string> ComponentGroups::groupOf(const std::string& component) const
{
    std::vector<std::string> there;
    if (const std::string* key = keyOf(component))
        for (const std::string& member : m_members.at(*key)) {
            const std::string sibling = beside(component, member);
            const std::string& id = m_asset.findComponent(sibling) ? sibling : member;
            if (m_asset.findComponent(id))
                there.push_back(id);
        }
    return there;
}

void ComponentGroups::remove(const std::vector<std::string>& components)
{
    std::map<std::string, std::unordered_set<std::string>> gone; // The places of each group.
    for (const std::string& component : components)
        if (const std::string* key = keyOf(component))
            gone[*key].insert(placeOf(component));
    for (const auto& [key, places] : gone) {
        std::vector<std::string>& members = m_members[key];
        std::erase_if(members, [&](const std::string& member) { return places.contains(placeOf(member)); });
        if (members.size() < 2)
            m_asset.setting(key, {});
        else
            keep(key);
    }
}

bool ComponentGroups::separate(const std::string& component)
{
    const std::string* key = keyOf(component);
    if (!key)
        return false;
    m_asset.setting(*key, {});
    return true;
}

} // namespace Vs
