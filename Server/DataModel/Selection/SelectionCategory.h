#pragma once

#include "Server/DataModel/Selection/SelectionFilter.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// One kind of thing that the user can have left out of what is picked. Main thread only.
class SelectionCategory : public Implements<SelectionCategory>
{
public:
    /// The place in a list of categories, the id and the title, which is the user's. Enabled at first.
    SelectionCategory(int order, std::wstring id, std::wstring name)
        : m_order(order), m_id(std::move(id)), m_name(std::move(name))
    {
    }

    const std::wstring& name() const { return m_name; }
    /// The same in every language.
    const std::wstring& id() const { return m_id; }
    int order() const { return m_order; }
    bool isEnabled() const { return m_enabled; }
    /// `kept` tells that it is the user's choice for as long as no tool runs, also the next time the program
    /// is started; any other is for the running tool alone.
    void enable(bool on, bool kept);

private:
    friend class ObjectKindFilter;
    int m_order;
    std::wstring m_id, m_name;
    bool m_enabled = true;
};

/// A filter that knows by which categories it decides.
class EnumerableSelectionFilter : public Implements<EnumerableSelectionFilter, SelectionFilter>
{
public:
    /// Owned by the filter, good as long as it lives.
    virtual std::vector<SelectionCategory*> selectionCategories() const = 0;

    /// Adds the categories of those of the filters that have any, in their order.
    static void getSortedSelectionCategories(const std::vector<const SelectionFilter*>& filters,
                                             std::vector<SelectionCategory*>& categories);
};

/// What of a model may be picked, by kind: vertices, edges, faces, solids, bodies, components. Solids are out
/// at first: only the exact shape tells them. Other things than
/// objects of a model are not its business, and accepted.
class ObjectKindFilter : public Implements<ObjectKindFilter, EnumerableSelectionFilter>
{
public:
    /// Everything, or, with `restored`, what the user chose last for when no tool runs.
    explicit ObjectKindFilter(bool restored);

    bool accepts(const Selection& selection) const override;
    bool mayAccept(ObjectPath::Leaf kind) const override { return categoryOf(kind).isEnabled(); }
    std::vector<SelectionCategory*> selectionCategories() const override;

private:
    SelectionCategory& categoryOf(ObjectPath::Leaf kind) const;

    std::vector<std::unique_ptr<SelectionCategory>> m_categories;
};

/// What is in force of selection in one session just now. Main thread only.
class SelectionState
{
public:
    /// Adds the filters of the input that takes the clicks; none if no input does.
    void activeSelectionFilters(std::vector<const SelectionFilter*>& filters) const
    {
        if (m_source)
            m_source(filters);
    }

    using Source = std::function<void(std::vector<const SelectionFilter*>&)>;
    /// Set by whoever knows the inputs.
    void source(Source source) { m_source = std::move(source); }

private:
    Source m_source;
};

} // namespace Vs
