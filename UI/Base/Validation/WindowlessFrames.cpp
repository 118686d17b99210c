#include "UI/Base/Validation/WindowlessFrames.h"

#include "Server/Base/Status.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Application.h"
#include "UI/Base/CanvasPicture.h"
#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/GraphicsView.h"

#include <utility>

namespace Vu {

bool WindowlessFrames::serves(const GraphicsCanvas* canvas)
{
    return canvas->view() && !canvas->view()->viewFragments().empty() && !canvas->existingWidget();
}

void WindowlessFrames::drawSoon(bool moving)
{
    if (std::exchange(m_state->queued, true))
        return;
    Application::get()->deferredTasks()->post([state = std::weak_ptr(m_state), moving] {
        if (const auto alive = state.lock()) {
            alive->queued = false;
            draw(*alive, moving);
        }
    });
}

void WindowlessFrames::draw(State& state, bool moving)
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    for (const GraphicsCanvas* canvas : canvases) {
        if (!serves(canvas))
            continue;
        canvas->view()->update();
        Vs::Scene::Image image;
        Vs::Status status; // What cannot be drawn here is a metric without pictures, which is told there.
        state.drew |= drawCanvas(*canvas, canvas->view()->viewFragments(), moving, 1, image, status);
    }
}

} // namespace Vu
