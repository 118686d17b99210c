#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <algorithm>

namespace Vs {

/// Says what may be selected.
class SelectionFilter : public Implements<SelectionFilter>
{
public:
    virtual bool accepts(const Selection& selection) const = 0;
};

/// Several filters as one. Without any it accepts everything.
class CompositeSelectionFilter : public Implements<CompositeSelectionFilter, SelectionFilter>
{
public:
    enum class ELogic {
        All = 0, ///< Every filter has to accept.
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

    bool accepts(const Selection& selection) const override
    {
        const auto accepts = [&](const SelectionFilter* filter) { return filter->accepts(selection); };
        return m_filters.empty() ||
               (m_logic == ELogic::All ? std::all_of(m_filters.begin(), m_filters.end(), accepts)
                                       : std::any_of(m_filters.begin(), m_filters.end(), accepts));
    }

private:
    ELogic m_logic;
    std::vector<const SelectionFilter*> m_filters;
};

} // namespace Vs
