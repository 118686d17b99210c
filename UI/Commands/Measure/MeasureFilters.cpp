#include "UI/Commands/Measure/MeasureFilters.h"

#include "Server/DataModel/Measure/MeasureMgr.h"

namespace Vu::Commands {

void MeasureFilters::fill()
{
    const Vs::MeasureMgr& manager = *Vs::MeasureMgr::get();
    const auto addTo = [&](Vs::CompositeSelectionFilter& filter, unsigned bit) {
        for (const Vs::SelectionFilter* each : manager.filters(static_cast<Vs::ESelectionType>(bit)))
            filter.add(each);
    };
    const unsigned mask = manager.selectionTypes();
    m_objects.clear();
    for (unsigned bit = 1; bit <= mask; bit *= 2)
        if (mask & bit)
            addTo(m_objects, bit);
    m_places.clear();
    const auto vertex = static_cast<unsigned>(Vs::ESelectionType::Vertex);
    if (mask & vertex)
        addTo(m_places, vertex);
}

} // namespace Vu::Commands
