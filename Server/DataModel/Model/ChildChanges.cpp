#include "Server/DataModel/Model/ChildChanges.h"

#include "Server/Body/Body.h"
#include "Server/Component/ComponentIds.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace Vs {

namespace {

using Children = std::vector<std::unique_ptr<Component>>;
using AllNames = std::unordered_map<const Component*, ChildNames>;

constexpr size_t kFew = 64;

// An index of names costs as much to make anew as it does to change it for all.
ChildNames* namesOf(AllNames& all, const Component* parent, size_t changes)
{
    const auto names = all.find(parent);
    if (names == all.end() || changes <= kFew)
        return names == all.end() ? nullptr : &names->second;
    all.erase(names);
    return nullptr;
}

auto placeFor(Component& parent, const Component& child)
{
    return parent.children.begin() + static_cast<std::ptrdiff_t>(rowOf(parent, child.id));
}

void takeOut(Component& parent, const std::vector<const Component*>& going, Children& gone)
{
    if (going.size() <= kFew) {
        for (const Component* child : going) {
            const auto place = placeFor(parent, *child);
            gone.push_back(std::move(*place));
            parent.children.erase(place);
        }
        return;
    }
    std::erase_if(parent.children, [&](std::unique_ptr<Component>& child) {
        if (child->notes.part)
            return false;
        gone.push_back(std::move(child));
        return true;
    });
}

void putIn(Component& parent, Children& coming)
{
    Children& all = parent.children;
    if (coming.size() <= kFew) {
        for (std::unique_ptr<Component>& child : coming) {
            const auto place = placeFor(parent, *child);
            all.insert(place, std::move(child));
        }
        return;
    }
    const auto before = static_cast<std::ptrdiff_t>(all.size());
    std::ranges::move(coming, std::back_inserter(all));
    std::inplace_merge(all.begin(), all.begin() + before, all.end(),
                       [](const auto& a, const auto& b) { return lastNumber(a->id) < lastNumber(b->id); });
}

} // namespace

Component& ChildChanges::come(Component& parent, std::unique_ptr<Component> child)
{
    return *m_coming[&parent].emplace_back(std::move(child));
}

void ChildChanges::go(Component& parent, const Component& child)
{
    m_going[&parent].push_back(&child);
}

void ChildChanges::settle(AllNames& names)
{
    // A parent may be among those that go.
    Children gone;
    for (const auto& [parent, children] : m_going) {
        if (ChildNames* const known = namesOf(names, parent, children.size()))
            for (const Component* child : children)
                known->remove(*child);
        takeOut(*parent, children, gone);
    }
    for (auto& [parent, children] : m_coming) {
        if (ChildNames* const known = namesOf(names, parent, children.size()))
            for (const auto& child : children)
                known->add(*child);
        putIn(*parent, children);
    }
    m_coming.clear();
    m_going.clear();
}

/// By the order in which places stand in the model's data, those of one assembly together.
void sortByPlace(std::vector<TouchedPlace>& places)
{
    struct Key
    {
        std::string_view assembly;
        int number;
        size_t index;
    };
    std::vector<Key> keys;
    for (size_t i = 0; i < places.size(); ++i) {
        const std::string& entry = places[i].entry;
        keys.push_back({std::string_view(entry).substr(0, entry.rfind(':')), lastNumber(entry), i});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        const int order = a.assembly.compare(b.assembly);
        return order != 0 ? order < 0 : a.number < b.number;
    });
    std::vector<TouchedPlace> sorted;
    sorted.reserve(places.size());
    for (const Key& key : keys)
        sorted.push_back(std::move(places[key.index]));
    places = std::move(sorted);
}

/// Leaves out what lies in a branch that is named itself.
void keepTopmost(std::vector<std::string>& ids)
{
    if (std::ranges::none_of(ids, [](const std::string& id) { return id.find('/') != std::string::npos; }))
        return;
    const std::unordered_set<std::string> all(ids.begin(), ids.end());
    std::erase_if(ids, [&](const std::string& id) {
        std::string above = parentId(id);
        while (!above.empty() && !all.contains(above))
            above = parentId(above);
        return !above.empty();
    });
}

} // namespace Vs
