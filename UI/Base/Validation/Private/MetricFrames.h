#pragma once

#include <memory>

namespace Vu {

class GraphicsCanvas;

/// Draws what nobody else would draw in time for a metric: canvases without a widget, and during a replay
/// also those with one, since its lines leave windows no time to paint. Main thread only.
class MetricFrames
{
public:
    /// Whether the canvas shows something and must be drawn here.
    static bool serves(const GraphicsCanvas* canvas);

    /// At the end of the event, once for all calls. `moving` as for drawCanvas.
    void drawSoon(bool moving);
    /// Whether a canvas without a widget was drawn here.
    bool drewWindowless() const { return m_state->drewWindowless; }

private:
    struct State
    {
        bool queued = false;
        bool drewWindowless = false;
    };
    static void draw(State& state, bool moving);

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace Vu
