#pragma once

#include "UI/Base/View/View.h"

#include <memory>
#include <vector>

namespace Vu {

/// The views of one asset session, in the order in which they were made. Owns them.
class ViewMgr : public Vs::Implements<ViewMgr>
{
public:
    const std::vector<View*>& views() const { return m_views; }
    /// The view of that class that has the user's attention (SplitViewMgr::activeView), or else the first
    /// one; null if there is none.
    [[nodiscard]] View* view(const Vs::UniqueString* interfaceId) const;

    void add(std::unique_ptr<View> view);
    /// Deletes the view. Unknown ones are ignored.
    void remove(View* view);

private:
    std::vector<std::unique_ptr<View>> m_owned;
    std::vector<View*> m_views;
};

} // namespace Vu
