#include "Server/DataModel/Model/PartIndex.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace Vs {

namespace {

using Lists = std::unordered_map<std::string, PartIndex::Components>;

const PartIndex::Components& listIn(const Lists& lists, const std::string& key)
{
    static const PartIndex::Components none;
    const auto found = lists.find(key);
    return found == lists.end() ? none : found->second;
}

bool isInAssembly(const Component& component)
{
    return component.id.find('/') != std::string::npos;
}

/// Returns the row that it gets.
uint32_t append(PartIndex::Components& list, Component& component)
{
    list.push_back(&component);
    return static_cast<uint32_t>(list.size() - 1);
}

/// Takes one out of a list, the last of which takes the row that becomes free.
void takeOut(Lists& lists, Lists::iterator list, uint32_t Component::Notes::*rowOf,
             const Component& component)
{
    Component* const last = list->second.back();
    list->second.pop_back();
    if (last != &component) {
        list->second[component.notes.*rowOf] = last;
        last->notes.*rowOf = component.notes.*rowOf;
    }
    if (list->second.empty())
        lists.erase(list);
}

/// Where that stands which a component shows, as far as the tree of a file tells: the shape of its body, or
/// what its children stand in. Empty for an assembly of nothing.
std::string partShownBy(const Component& component)
{
    if (const auto* body = cast<ModelBody>(component.body.get()))
        return body->entry();
    if (component.children.empty())
        return {};
    const std::string place = placeOf(component.children.front()->id);
    return place.substr(0, place.rfind(':'));
}

} // namespace

void PartIndex::add(Component& component, const std::string& part)
{
    const auto ofPart = m_ofPart.try_emplace(part).first;
    component.notes.part = &ofPart->first;
    component.notes.rowOfPart = append(ofPart->second, component);
    if (isInAssembly(component))
        component.notes.rowAtPlace = append(m_atPlace[placeOf(component.id)], component);
}

bool PartIndex::addTree(const Component& parent, const std::string& part)
{
    int last = 0;
    return std::ranges::all_of(parent.children, [&](const std::unique_ptr<Component>& child) {
        const std::string shown = partShownBy(*child), place = placeOf(child->id);
        const int number = lastNumber(child->id);
        if (shown.empty() || child->id != idBelow(parent, place) ||
            place.substr(0, place.rfind(':')) != part || number <= std::exchange(last, number))
            return false;
        add(*child, shown);
        return addTree(*child, shown);
    });
}

std::string PartIndex::remove(Component& component)
{
    if (!component.notes.part)
        return {};
    if (isInAssembly(component))
        takeOut(m_atPlace, m_atPlace.find(placeOf(component.id)), &Component::Notes::rowAtPlace, component);
    const auto ofPart = m_ofPart.find(*std::exchange(component.notes.part, nullptr));
    std::string part = ofPart->second.size() == 1 ? ofPart->first : std::string();
    takeOut(m_ofPart, ofPart, &Component::Notes::rowOfPart, component);
    return part;
}

const std::string& PartIndex::partOf(const Component& component) const
{
    static const std::string none;
    return component.notes.part ? *component.notes.part : none;
}

const PartIndex::Components& PartIndex::ofPart(const std::string& part) const
{
    return listIn(m_ofPart, part);
}

const PartIndex::Components& PartIndex::atPlace(const std::string& place) const
{
    return listIn(m_atPlace, place);
}

} // namespace Vs
