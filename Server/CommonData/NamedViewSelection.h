#pragma once

#include "Server/Base/Require.h"
#include "Server/CommonData/NamedViews.h"
#include "Server/DataModel/Selection/Selection.h"

namespace Vs::NameView {

/// A named view as selected in the browser.
class NamedViewSelection : public Implements<NamedViewSelection, Selection>
{
public:
    NamedViewSelection(const Asset* asset, StrongRef<NamedView> view)
        : m_asset(asset), m_view(std::move(view))
    {
        require(m_view.get() != nullptr, "a named view that is selected is there");
    }

    const StrongRef<NamedView>& namedView() const { return m_view; }

    bool isEqualTo(const Selection& other) const override
    {
        const auto* view = cast<NamedViewSelection>(&other);
        return view && view->m_asset == m_asset && view->m_view->name() == m_view->name();
    }

private:
    const Asset* m_asset; ///< Only for comparison.
    StrongRef<NamedView> m_view;
};

/// The folder of an asset's named views.
class NamedViewsSelection : public Implements<NamedViewsSelection, Selection>
{
public:
    /// `views` lives as long as its asset, and whoever closes that clears the selection first.
    explicit NamedViewsSelection(NamedViews* views) : m_views(views) {}

    NamedViews* namedViews() const { return m_views; }

    bool isEqualTo(const Selection& other) const override
    {
        const auto* folder = cast<NamedViewsSelection>(&other);
        return folder && folder->m_views == m_views;
    }

private:
    NamedViews* m_views;
};

} // namespace Vs::NameView
