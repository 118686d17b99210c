#include "UI/Base/Validation/Private/MetricFrames.h"

#include "Server/Base/Status.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/Private/CanvasPicture.h"

#include <algorithm>
#include <utility>

namespace Vu {

bool MetricFrames::serves(const GraphicsCanvas* canvas)
{
    return canvas->view() && !canvas->view()->viewFragments().empty() &&
           (!canvas->existingWidget() || Vs::TranscriptMgr::get()->replaying());
}

void MetricFrames::drawSoon(bool moving)
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

void MetricFrames::draw(State& state, bool moving)
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    const bool inWindow = std::any_of(canvases.begin(), canvases.end(), [](const GraphicsCanvas* canvas) {
        return canvas->existingWidget() != nullptr;
    });
    for (GraphicsCanvas* canvas : canvases) {
        if (!serves(canvas))
            continue;
        // What a program with a window doesn't show doesn't count as a frame.
        if (inWindow) {
            canvas->repaintNow();
            continue;
        }
        canvas->view()->update();
        Vs::Scene::Image image;
        Vs::Status status; // If it can't be drawn here, the metric has no frames, which is reported there.
        state.drewWindowless |=
            drawCanvas(*canvas, canvas->view()->viewFragments(), moving, 1, image, status);
    }
}

} // namespace Vu
