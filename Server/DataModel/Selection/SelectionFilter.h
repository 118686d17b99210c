#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <algorithm>

namespace Vs {

/// Says what may be selected.
class SelectionFilter : public Implements<SelectionFilter>
{
public:
    [[nodiscard]] virtual bool accepts(const Selection& selection) const = 0;
    /// Whether it may accept objects of this kind; if not, a view needn't look for them. The default calls
    /// `accepts` with an object that doesn't exist: override it where more than the kind matters.
    [[nodiscard]] virtual bool mayAccept(ObjectPath::Leaf leaf) const
    {
        return accepts(LogicalSelection(nullptr, ObjectPath{.component = {}, .leaf = leaf}, nullptr));
    }
};

/// Several filters as one. Without any it accepts everything.
class CompositeSelectionFilter : public Implements<CompositeSelectionFilter, SelectionFilter>
{
public:
    enum class ELogic {
        All = 0, ///< All filters must accept.
        Any = 1, ///< One is enough.
    };

    explicit CompositeSelectionFilter(ELogic logic) : m_logic(logic) {}

    /// Not owned; null is ignored.
    void add(const SelectionFilter* filter)
    {
        if (filter)
            m_filters.push_back(filter);
    }

    void clear() { m_filters.clear(); }

    [[nodiscard]] bool accepts(const Selection& selection) const override
    {
        return ask([&](const SelectionFilter* filter) { return filter->accepts(selection); });
    }
    [[nodiscard]] bool mayAccept(ObjectPath::Leaf leaf) const override
    {
        return ask([&](const SelectionFilter* filter) { return filter->mayAccept(leaf); });
    }

private:
    template <class Answer>
    bool ask(Answer answer) const
    {
        return m_filters.empty() ||
               (m_logic == ELogic::All ? std::all_of(m_filters.begin(), m_filters.end(), answer)
                                       : std::any_of(m_filters.begin(), m_filters.end(), answer));
    }

    ELogic m_logic;
    std::vector<const SelectionFilter*> m_filters;
};

} // namespace Vs
