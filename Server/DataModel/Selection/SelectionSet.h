#pragma once

#include "Server/Base/Event.h"
#include "Server/DataModel/Selection/SelectedComponents.h"
#include "Server/DataModel/Selection/Selection.h"

#include <memory>
#include <unordered_map>

namespace Vs {

/// Listens to a set.
class SelectionSetSite : public EventSite
{
public:
    /// Called after each change, which may be of many things at once.
    virtual void selectionSetChanged() = 0;
};

/// Tells quickly which of thousands of selections there are; good as long as they are.
class SelectionIndex
{
public:
    explicit SelectionIndex(const std::vector<StrongRef<Selection>>& selections);
    [[nodiscard]] bool contains(const Selection& selection) const;

private:
    std::unordered_multimap<size_t, const Selection*> m_byHash;
};

/// What is selected, each thing once, in the order in which it came. Main thread only.
class SelectionSet : public EventSource<SelectionSetSite>
{
public:
    const std::vector<StrongRef<Selection>>& selections() const { return m_selections; }
    [[nodiscard]] bool empty() const { return m_selections.empty(); }
    size_t size() const { return m_selections.size(); }
    [[nodiscard]] bool contains(const Selection& selection) const;
    /// Of which components they are. Made when it is first asked for, and good until the next change.
    const SelectedComponents& components() const;

    /// Each returns whether something changed. Null is never added.
    bool add(StrongRef<Selection> selection);
    bool remove(const Selection& selection);
    bool clear();
    /// Takes these in place of all there is, as one change.
    bool replace(const std::vector<StrongRef<Selection>>& selections);

private:
    bool changed();

    std::vector<StrongRef<Selection>> m_selections;
    mutable std::unique_ptr<const SelectedComponents> m_components; ///< Null until it is asked for.
};

} // namespace Vs
