#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"

namespace Vs {

/// What is selected in one session, and whether anything may be selected now. Main thread only.
class SelectionMgr : public Implements<SelectionMgr>
{
public:
    /// What the user has selected.
    SelectionSet& selectionSet() { return m_selected; }
    /// What lies under the pointer and would be selected by a click.
    SelectionSet& highlightSet() { return m_highlighted; }

    /// Suspending and resuming are counted: selection is possible again when each suspension was resumed. The
    /// count may fall below zero, which a later suspension makes good.
    /// What is highlighted goes out with a suspension.
    void suspendSelection()
    {
        ++m_suspensions;
        m_highlighted.clear();
    }
    void resumeSelection() { --m_suspensions; }
    /// The model is about to change under the pointer: what was found there is given up.
    void invalidate() { m_highlighted.clear(); }
    bool suspended() const { return m_suspensions > 0; }

private:
    SelectionSet m_selected, m_highlighted;
    int m_suspensions = 0;
};

} // namespace Vs
