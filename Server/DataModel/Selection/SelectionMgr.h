#pragma once

#include "Server/DataModel/Selection/SelectionCategory.h"
#include "Server/DataModel/Selection/SelectionSet.h"

#include <map>

namespace Vs {

/// What is selected in one session, and whether anything may be selected now. Main thread only.
class SelectionMgr : public Implements<SelectionMgr>
{
public:
    /// What the user has selected.
    SelectionSet& selectionSet() { return m_selected; }
    /// What is under the pointer and would be selected by a click.
    SelectionSet& highlightSet() { return m_highlighted; }

    /// What the inputs of running commands hold; highlighted like the user's selection.
    SelectionSet& collectedSet() { return m_collected; }
    /// What one input holds; nothing once its command has ended. The owner only serves as a key.
    void collect(const void* owner, const std::vector<StrongRef<Selection>>& selections)
    {
        if (selections.empty())
            m_byOwner.erase(owner);
        else
            m_byOwner[owner] = selections;
        std::vector<StrongRef<Selection>> all;
        for (const auto& [input, held] : m_byOwner)
            all.insert(all.end(), held.begin(), held.end());
        m_collected.replace(all);
    }

    /// What may currently be picked. Never null.
    SelectionState* selectionState() { return &m_state; }

    /// Suspending and resuming are counted: selection is possible again once each suspension was resumed. The
    /// count may drop below zero, which a later suspension evens out.
    /// A suspension clears the highlight.
    void suspendSelection()
    {
        ++m_suspensions;
        m_highlighted.clear();
    }
    void resumeSelection() { --m_suspensions; }
    /// The model is about to change under the pointer: discards what was found there.
    void invalidate() { m_highlighted.clear(); }
    bool suspended() const { return m_suspensions > 0; }

private:
    SelectionSet m_selected, m_highlighted, m_collected;
    std::map<const void*, std::vector<StrongRef<Selection>>> m_byOwner;
    SelectionState m_state;
    int m_suspensions = 0;
};

} // namespace Vs
