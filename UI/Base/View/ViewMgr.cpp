#include "UI/Base/View/ViewMgr.h"

#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewMgr.h"

#include <algorithm>

namespace Vu {

View* ViewMgr::view(const Vs::UniqueString* interfaceId) const
{
    // Only compared, and found among the session's own: the active view may be of another class or session.
    const View* const active = SplitViewMgr::get()->activeView();
    const auto attended = std::find(m_views.begin(), m_views.end(), active);
    if (active && attended != m_views.end() && active->queryInterface(interfaceId))
        return *attended;
    const auto found = std::find_if(m_views.begin(), m_views.end(),
                                    [&](const View* view) { return view->queryInterface(interfaceId); });
    return found == m_views.end() ? nullptr : *found;
}

void ViewMgr::add(std::unique_ptr<View> view)
{
    m_views.push_back(view.get());
    m_owned.push_back(std::move(view));
}

void ViewMgr::remove(View* view)
{
    std::erase(m_views, view);
    std::erase_if(m_owned, [&](const auto& owned) { return owned.get() == view; });
}

} // namespace Vu
