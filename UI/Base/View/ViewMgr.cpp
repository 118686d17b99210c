#include "UI/Base/View/ViewMgr.h"

#include "UI/Base/View/GraphicsView.h"

#include <algorithm>

namespace Vu {

View* ViewMgr::view(const Vs::UniqueString* interfaceId) const
{
    const auto found = std::find_if(m_views.begin(), m_views.end(),
                                    [&](const View* view) { return view->queryInterface(interfaceId); });
    return found == m_views.end() ? nullptr : *found;
}

GraphicsView* ViewMgr::graphicsView() const
{
    return Vs::cast<GraphicsView>(view(GraphicsView::interfaceId()));
}

void ViewMgr::add(std::unique_ptr<View> view)
{
    if (auto* graphics = Vs::cast<GraphicsView>(view.get()))
        graphics->m_manager = this;
    m_views.push_back(view.get());
    m_owned.push_back(std::move(view));
}

void ViewMgr::remove(View* view)
{
    std::erase(m_views, view);
    std::erase_if(m_owned, [&](const auto& owned) { return owned.get() == view; });
}

void ViewMgr::attend(View* view)
{
    const auto found = std::find(m_views.begin(), m_views.end(), view);
    if (found != m_views.end())
        std::rotate(m_views.begin(), found, found + 1);
}

} // namespace Vu
