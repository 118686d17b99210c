#include "Server/DataModel/Model/PartIndex.h"

#include "Server/Component/ComponentIds.h"

namespace Vs {

namespace {

const PartIndex::Components& listIn(const std::unordered_map<std::string, PartIndex::Components>& lists,
                                    const std::string& key)
{
    static const PartIndex::Components none;
    const auto found = lists.find(key);
    return found == lists.end() ? none : found->second;
}

} // namespace

void PartIndex::add(Component& component, const std::string& part)
{
    Components& ofPart = m_ofPart[part];
    Components& atPlace = m_atPlace[placeOf(component.id)];
    m_known[&component] = {part, ofPart.size(), atPlace.size()};
    ofPart.push_back(&component);
    atPlace.push_back(&component);
}

std::string PartIndex::remove(const Component& component)
{
    const auto found = m_known.extract(&component);
    if (!found)
        return {};
    const Known& known = found.mapped();
    removeFrom(m_atPlace, placeOf(component.id), component, known.rowAtPlace, &Known::rowAtPlace);
    return removeFrom(m_ofPart, known.part, component, known.rowOfPart, &Known::rowOfPart) ? known.part
                                                                                           : std::string();
}

/// Returns whether the list is gone. The last of it takes the row that becomes free.
bool PartIndex::removeFrom(Lists& lists, const std::string& key, const Component& component, size_t row,
                           size_t Known::*rowOf)
{
    const auto found = lists.find(key);
    Components& list = found->second;
    Component* const last = list.back();
    list.pop_back();
    if (last != &component) {
        list[row] = last;
        m_known.find(last)->second.*rowOf = row;
    }
    if (!list.empty())
        return false;
    lists.erase(found);
    return true;
}

const std::string& PartIndex::partOf(const Component& component) const
{
    static const std::string none;
    const auto found = m_known.find(&component);
    return found == m_known.end() ? none : found->second.part;
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
