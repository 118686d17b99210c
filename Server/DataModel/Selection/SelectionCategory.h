#pragma once

#include "Server/DataModel/Selection/SelectionFilter.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// One kind of thing that the user can exclude from picking. Main thread only.
class SelectionCategory : public Implements<SelectionCategory>
{
public:
    /// The position in a list of categories, the id and the title, which is in the user's language. Initially
    /// enabled.
    SelectionCategory(int order, std::wstring id, std::wstring name)
        : m_order(order), m_id(std::move(id)), m_name(std::move(name))
    {
    }

    const std::wstring& name() const { return m_name; }
    /// The same in every language.
    const std::wstring& id() const { return m_id; }
    int order() const { return m_order; }
    bool isEnabled() const { return m_enabled; }
    /// `kept` means that it is the user's choice for whenever no tool runs, also the next time the program
    /// starts; otherwise it applies only to the running tool.
    void enable(bool on, bool kept);

private:
    friend class ObjectKindFilter;
    int m_order;
    std::wstring m_id, m_name;
    bool m_enabled = true;
};

/// A filter that knows the categories by which it decides.
class EnumerableSelectionFilter : public Implements<EnumerableSelectionFilter, SelectionFilter>
{
public:
    /// Owned by the filter, valid as long as it lives.
    virtual std::vector<SelectionCategory*> selectionCategories() const = 0;

    /// Adds the categories of those of the filters that have any, in their order.
    static void getSortedSelectionCategories(const std::vector<const SelectionFilter*>& filters,
                                             std::vector<SelectionCategory*>& categories);
};

/// Which kinds of a model's objects may be picked: vertices, edges, faces, solids, bodies, components. Solids
/// are initially excluded: only the exact shape knows them. It accepts anything that isn't an object of a
/// model.
class ObjectKindFilter : public Implements<ObjectKindFilter, EnumerableSelectionFilter>
{
public:
    /// Everything, or, with `restored`, the user's last choice for when no tool runs.
    explicit ObjectKindFilter(bool restored);

    bool accepts(const Selection& selection) const override;
    bool mayAccept(ObjectPath::Leaf kind) const override { return categoryOf(kind).isEnabled(); }
    std::vector<SelectionCategory*> selectionCategories() const override;

private:
    SelectionCategory& categoryOf(ObjectPath::Leaf kind) const;

    std::vector<std::unique_ptr<SelectionCategory>> m_categories;
};

/// What currently governs selection in one session. Main thread only.
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
    /// Set by the code that knows the inputs.
    void source(Source source) { m_source = std::move(source); }

private:
    Source m_source;
};

} // namespace Vs
