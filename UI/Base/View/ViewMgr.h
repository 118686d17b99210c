#pragma once

#include "UI/Base/View/View.h"

#include <memory>
#include <vector>

namespace Vu {

class GraphicsView;

/// The views of one asset session. Owns them. The one that had the user's attention last (that the active
/// canvas of SplitViewMgr shows or showed) is the first; others keep their order.
class ViewMgr : public Vs::Implements<ViewMgr>
{
public:
    const std::vector<View*>& views() const { return m_views; }
    /// The first view of that class; null if there is none.
    [[nodiscard]] View* view(const Vs::UniqueString* interfaceId) const;
    /// The first that shows a model; null if there is none.
    [[nodiscard]] GraphicsView* graphicsView() const;

    /// Adds a view as the last one.
    void add(std::unique_ptr<View> view);
    /// Deletes the view. Unknown ones are ignored.
    void remove(View* view);
    /// Makes the view the first one. Unknown ones are ignored.
    void attend(View* view);

private:
    std::vector<std::unique_ptr<View>> m_owned;
    std::vector<View*> m_views;
};

} // namespace Vu
