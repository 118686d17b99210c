#include "UI/Base/View/Private/CanvasPicture.h"

#include "Server/Base/Timer.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/Private/FrameEvents.h"

namespace Vu {

bool drawCanvas(const GraphicsCanvas& canvas, const std::vector<Vs::Scene::ViewFragment*>& fragments,
                bool moving, float pixelRatio, Vs::Scene::Image& image, Vs::Status& status)
{
    Vs::Scene::ImageOptions options = Vs::Scene::ImageOptions::current();
    options.fine = false;
    options.moving = moving;
    options.effects = !moving;
    options.transparentBackground = false;
    options.pixelRatio = pixelRatio;
    options.marks = true;
    // What a replay picks must not depend on what was made in time.
    options.finerWait = Vs::TranscriptMgr::get()->replaying() ? -1 : 0;
    const Vs::Utility::timer clock;
    if (!Vs::Scene::OffscreenRenderer::get()->render(fragments, static_cast<uint32_t>(canvas.pixelWidth()),
                                                     static_cast<uint32_t>(canvas.pixelHeight()), options,
                                                     image, status))
        return false;
    FrameEvent event(&canvas, clock.elapsed());
    FrameEventSource::get()->fireFrameDrawn(&event);
    return true;
}

} // namespace Vu
