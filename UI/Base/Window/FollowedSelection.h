#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"

namespace Vu {

/// The selection that a site follows, of one session after another. Before it is destroyed the set must be
/// left by calling `follow` with null.
class FollowedSelection
{
public:
    /// The site outlives this.
    explicit FollowedSelection(Vs::SelectionSetSite& site) : m_site(site) {}
    ~FollowedSelection() { follow(nullptr); }
    FollowedSelection(const FollowedSelection&) = delete;
    FollowedSelection& operator=(const FollowedSelection&) = delete;

    void follow(Vs::SelectionSet* set)
    {
        if (set == m_set)
            return;
        if (m_set)
            m_set->unsubscribe(&m_site);
        m_set = set;
        if (m_set)
            m_set->subscribe(&m_site);
    }
    /// The set being followed; null for none.
    const Vs::SelectionSet* set() const { return m_set; }
    /// Whether nothing is selected in it, or no set is followed.
    bool empty() const { return !m_set || m_set->empty(); }

private:
    Vs::SelectionSetSite& m_site;
    Vs::SelectionSet* m_set = nullptr;
};

} // namespace Vu
