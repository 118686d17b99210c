#pragma once

#include "Server/DataModel/Selection/SelectionFilter.h"

#include <cstddef>

namespace Vu::Commands {

/// What the measuring tool's selections take, of the types that MeasureMgr has in its mask. Bodies are no
/// places, so that the third selection, which only an angle at the second needs, takes none.
class MeasureFilters
{
public:
    /// Takes over the mask.
    void fill();
    /// Of the selection of that number, from 0.
    const Vs::SelectionFilter* of(size_t selection) const { return selection < 2 ? &m_objects : &m_places; }

private:
    Vs::CompositeSelectionFilter m_objects{Vs::CompositeSelectionFilter::ELogic::Any};
    Vs::CompositeSelectionFilter m_places{Vs::CompositeSelectionFilter::ELogic::Any};
};

} // namespace Vu::Commands
