#include "Server/DataModel/Selection/SelectionSet.h"

#include <algorithm>
#include <utility>

namespace Vs {

SelectionIndex::SelectionIndex(const std::vector<StrongRef<Selection>>& selections)
{
    reserve(selections.size());
    for (const auto& selection : selections)
        add(*selection);
}

const Selection* SelectionIndex::remove(const Selection& selection)
{
    const auto found = m_selections.find(&selection);
    if (found == m_selections.end())
        return nullptr;
    const Selection* held = *found;
    m_selections.erase(found);
    return held;
}

bool SelectionSet::contains(const Selection& selection) const
{
    return m_index.contains(selection);
}

const SelectedComponents& SelectionSet::components() const
{
    if (!m_components)
        m_components = std::make_unique<SelectedComponents>(m_selections);
    return *m_components;
}

bool SelectionSet::changed()
{
    forEach([](SelectionSetSite* site) { site->selectionSetChanged(); });
    return true;
}

bool SelectionSet::changedWholly()
{
    ++m_generation;
    m_components.reset();
    m_removed.clear();
    return changed();
}

bool SelectionSet::append(const StrongRef<Selection>& selection)
{
    if (!selection || !m_index.add(*selection))
        return false;
    m_removed.clear();
    m_selections.push_back(selection);
    if (m_components)
        m_components->add(*selection);
    return true;
}

bool SelectionSet::add(StrongRef<Selection> selection)
{
    return append(selection) && changed();
}

bool SelectionSet::add(const std::vector<StrongRef<Selection>>& selections)
{
    const size_t before = m_selections.size();
    for (const auto& selection : selections)
        append(selection);
    return m_selections.size() > before && changed();
}

/// Removes those objects, which are no longer in the index.
bool SelectionSet::takeOut(std::vector<const Selection*> held)
{
    std::ranges::sort(held);
    std::vector<StrongRef<Selection>> removed;
    std::erase_if(m_selections, [&](StrongRef<Selection>& each) {
        const bool isHeld = std::ranges::binary_search(held, each.get());
        if (isHeld)
            removed.push_back(each);
        return isHeld;
    });
    if (removed.empty())
        return false;
    ++m_generation;
    m_components.reset(); // It lives on the ids of these.
    m_removed = std::move(removed);
    return changed();
}

bool SelectionSet::remove(const Selection& selection)
{
    const Selection* held = m_index.remove(selection);
    return held && takeOut({held});
}

bool SelectionSet::remove(const std::vector<StrongRef<Selection>>& selections)
{
    std::vector<const Selection*> held;
    for (const auto& selection : selections)
        if (const Selection* found = m_index.remove(*selection))
            held.push_back(found);
    return takeOut(std::move(held));
}

bool SelectionSet::replace(const std::vector<StrongRef<Selection>>& selections)
{
    const auto before = std::exchange(m_selections, {});
    m_components.reset(); // It lives on the ids of these, of which equal ones may take the place.
    m_index = {};
    m_index.reserve(selections.size());
    m_selections.reserve(selections.size());
    for (const auto& selection : selections)
        append(selection);
    const bool same = std::equal(before.begin(), before.end(), m_selections.begin(), m_selections.end(),
                                 [](const auto& a, const auto& b) { return a->isEqualTo(*b); });
    return !same && changedWholly();
}

bool SelectionSet::clear()
{
    if (m_selections.empty())
        return false;
    m_index = {};
    m_selections.clear();
    return changedWholly();
}

} // namespace Vs
