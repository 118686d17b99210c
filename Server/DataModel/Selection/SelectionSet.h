#pragma once

#include "Server/Base/Event.h"
#include "Server/DataModel/Selection/SelectedComponents.h"
#include "Server/DataModel/Selection/Selection.h"

#include <memory>
#include <unordered_set>
#include <vector>

namespace Vs {

/// Listens to a set.
class SelectionSetSite : public EventSite
{
public:
    /// Called after each change, which may affect many things at once.
    virtual void selectionSetChanged() = 0;
};

/// Finds quickly which of thousands of selections exist; valid as long as they are.
class SelectionIndex
{
public:
    SelectionIndex() = default;
    explicit SelectionIndex(const std::vector<StrongRef<Selection>>& selections);
    [[nodiscard]] bool contains(const Selection& selection) const
    {
        return m_selections.contains(&selection);
    }
    /// Returns whether it is new.
    bool add(const Selection& selection) { return m_selections.insert(&selection).second; }
    /// Returns the one that was added, which is equal; null if there is none.
    const Selection* remove(const Selection& selection);
    /// Reserves room for that many in all.
    void reserve(size_t count) { m_selections.reserve(count); }

private:
    struct Hash
    {
        size_t operator()(const Selection* selection) const { return selection->hash(); }
    };
    struct Equal
    {
        bool operator()(const Selection* a, const Selection* b) const { return a->isEqualTo(*b); }
    };

    std::unordered_set<const Selection*, Hash, Equal> m_selections;
};

/// What is selected, each thing once, in the order of selection. Main thread only.
class SelectionSet : public EventSource<SelectionSetSite>
{
public:
    const std::vector<StrongRef<Selection>>& selections() const { return m_selections; }
    [[nodiscard]] bool empty() const { return m_selections.empty(); }
    size_t size() const { return m_selections.size(); }
    [[nodiscard]] bool contains(const Selection& selection) const;
    /// The components that are selected. Made at the first request, and valid until the next change.
    const SelectedComponents& components() const;

    /// Each returns whether something changed. Null is never added.
    bool add(StrongRef<Selection> selection);
    bool remove(const Selection& selection);
    bool clear();
    /// Removes these as one change.
    bool remove(const std::vector<StrongRef<Selection>>& selections);
    /// Appends these as one change, whose cost doesn't grow with what is already selected.
    bool add(const std::vector<StrongRef<Selection>>& selections);
    /// Replaces everything with these, as one change.
    bool replace(const std::vector<StrongRef<Selection>>& selections);

    /// A number that changes with every change except appending: whoever has seen the same number before only
    /// needs to look at what was appended.
    size_t generation() const { return m_generation; }
    /// What the last change removed, if that was all it did; empty otherwise. Valid until the next change.
    const std::vector<StrongRef<Selection>>& removed() const { return m_removed; }

private:
    bool append(const StrongRef<Selection>& selection);
    bool takeOut(std::vector<const Selection*> held);
    bool changed();
    bool changedWholly();

    std::vector<StrongRef<Selection>> m_selections, m_removed;
    SelectionIndex m_index; ///< Of m_selections.
    size_t m_generation = 0;
    mutable std::unique_ptr<SelectedComponents> m_components; ///< Null until it is needed.
};

} // namespace Vs
