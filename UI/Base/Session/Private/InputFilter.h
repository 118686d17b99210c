#pragma once

#include "Server/DataModel/Selection/SelectionFilter.h"
#include "UI/Base/Session/SelectionCommandInput.h"

namespace Vu {

/// All pick filters of an input as one.
class InputFilter
{
public:
    explicit InputFilter(const SelectionCommandInput& input)
    {
        std::vector<const Vs::SelectionFilter*> filters;
        input.pickFilters(filters);
        for (const Vs::SelectionFilter* filter : filters)
            m_filter.add(filter);
    }
    const Vs::SelectionFilter* filter() const { return &m_filter; }

private:
    Vs::CompositeSelectionFilter m_filter{Vs::CompositeSelectionFilter::ELogic::All};
};

} // namespace Vu
