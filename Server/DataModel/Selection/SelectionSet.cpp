#include "Server/DataModel/Selection/SelectionSet.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace Vs {
namespace {

auto find(const std::vector<StrongRef<Selection>>& selections, const Selection& wanted)
{
    return std::find_if(selections.begin(), selections.end(),
                        [&](const auto& selection) { return selection->isEqualTo(wanted); });
}

} // namespace

SelectionIndex::SelectionIndex(const std::vector<StrongRef<Selection>>& selections)
{
    for (const auto& selection : selections)
        m_byHash.emplace(selection->hash(), selection.get());
}

bool SelectionIndex::contains(const Selection& selection) const
{
    const auto [first, last] = m_byHash.equal_range(selection.hash());
    return std::any_of(first, last, [&](const auto& each) { return each.second->isEqualTo(selection); });
}

bool SelectionSet::contains(const Selection& selection) const
{
    return find(m_selections, selection) != m_selections.end();
}

const SelectedComponents& SelectionSet::components() const
{
    if (!m_components)
        m_components = std::make_unique<const SelectedComponents>(m_selections);
    return *m_components;
}

bool SelectionSet::changed()
{
    m_components.reset();
    forEach([](SelectionSetSite* site) { site->selectionSetChanged(); });
    return true;
}

bool SelectionSet::add(StrongRef<Selection> selection)
{
    if (!selection || contains(*selection))
        return false;
    m_selections.push_back(std::move(selection));
    return changed();
}

bool SelectionSet::remove(const Selection& selection)
{
    const auto found = find(m_selections, selection);
    if (found == m_selections.end())
        return false;
    m_selections.erase(found);
    return changed();
}

bool SelectionSet::replace(const std::vector<StrongRef<Selection>>& selections)
{
    const auto before = std::exchange(m_selections, {});
    m_components.reset(); // It lives on the ids of these, of which equal ones may take the place.
    std::unordered_set<size_t> hashes;
    for (const auto& selection : selections)
        if (selection && (hashes.insert(selection->hash()).second || !contains(*selection)))
            m_selections.push_back(selection);
    const bool same = std::equal(before.begin(), before.end(), m_selections.begin(), m_selections.end(),
                                 [](const auto& a, const auto& b) { return a->isEqualTo(*b); });
    return !same && changed();
}

bool SelectionSet::clear()
{
    if (m_selections.empty())
        return false;
    m_selections.clear();
    return changed();
}

} // namespace Vs
