#pragma once

#include <memory>

namespace Vu {

class GraphicsCanvas;

/// Draws the canvases that have no widget, which nobody else does, so that a run without a window can tell
/// how long pictures take. Main thread only.
class WindowlessFrames
{
public:
    /// Whether the canvas shows something and has no widget.
    static bool serves(const GraphicsCanvas* canvas);

    /// At the end of the event, once for all calls. `moving` as for drawCanvas.
    void drawSoon(bool moving);
    /// Whether anything was drawn here.
    bool drew() const { return m_state->drew; }

private:
    struct State
    {
        bool queued = false;
        bool drew = false;
    };
    static void draw(State& state, bool moving);

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace Vu
