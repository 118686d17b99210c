#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <functional>

namespace Vs {

/// What is selected, each thing once, in the order in which it came. Main thread only.
class SelectionSet
{
public:
    const std::vector<StrongRef<Selection>>& selections() const { return m_selections; }
    bool empty() const { return m_selections.empty(); }
    size_t size() const { return m_selections.size(); }
    bool contains(const Selection& selection) const;

    /// Each returns whether something changed. Null is never added.
    bool add(StrongRef<Selection> selection);
    bool remove(const Selection& selection);
    bool clear();
    /// Takes these in place of all there is, as one change.
    bool replace(const std::vector<StrongRef<Selection>>& selections);

    /// Called after each change; null for nobody.
    void observer(std::function<void()> observer) { m_observer = std::move(observer); }

private:
    bool changed();

    std::vector<StrongRef<Selection>> m_selections;
    std::function<void()> m_observer;
};

} // namespace Vs
