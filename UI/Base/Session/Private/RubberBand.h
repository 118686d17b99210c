#pragma once

#include "UI/Base/Program/CanvasBand.h"

namespace Vu {

class GraphicsCanvas;
class MouseEvent;

/// Shows a band on a canvas from the press of a button until this object is destroyed.
class RubberBand
{
public:
    /// Begins at the place of the event.
    explicit RubberBand(const MouseEvent& event);
    ~RubberBand();
    RubberBand(const RubberBand&) = delete;
    RubberBand& operator=(const RubberBand&) = delete;

    /// Takes the free corner there.
    void pullTo(const MouseEvent& event);
    const CanvasBand& band() const { return m_band; }

private:
    /// Null if it has gone meanwhile.
    GraphicsCanvas* canvas() const;

    GraphicsCanvas* m_canvas;
    CanvasBand m_band;
};

} // namespace Vu
