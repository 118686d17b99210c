#include "UI/Base/Session/Private/RubberBand.h"

#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"

#include <algorithm>
#include <vector>

namespace Vu {

RubberBand::RubberBand(const MouseEvent& event)
    : m_canvas(event.canvas()), m_band{event.x(), event.y(), event.x(), event.y()}
{
}

RubberBand::~RubberBand()
{
    if (GraphicsCanvas* shown = canvas())
        shown->band(std::nullopt);
}

GraphicsCanvas* RubberBand::canvas() const
{
    const std::vector<GraphicsCanvas*>& all = GraphicsCanvas::existingCanvases();
    return std::find(all.begin(), all.end(), m_canvas) != all.end() ? m_canvas : nullptr;
}

void RubberBand::pullTo(const MouseEvent& event)
{
    m_band.toX = event.x();
    m_band.toY = event.y();
    if (GraphicsCanvas* shown = canvas())
        shown->band(m_band);
}

} // namespace Vu
