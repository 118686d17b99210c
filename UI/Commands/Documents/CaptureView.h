#pragma once

#include "UI/Commands/Documents/ImageOptions.h"

namespace Vs {
class ImageResource;
class Status;
} // namespace Vs

namespace Vs::Scene {
struct Image;
}

namespace Vu {
class GraphicsView;
}

namespace Vu::Commands {

/// The view's size on the screen; a default one for a view that no canvas shows, as in a run without a
/// window.
void takeWindowSize(const GraphicsView& view, ImageOptions& options);

/// Renders the view for use elsewhere: without ground, dome and grid, whatever the user's options, which it
/// leaves as they were; or as it is shown if that is asked for. Writes it to the file as
/// GraphicsView::renderImage does.
bool captureView(GraphicsView& view, Vs::ImageResource& file, const ImageOptions& options,
                 Vs::Status& status);
/// The same into memory. False, with the reason, if rendering failed.
bool captureView(const GraphicsView& view, Vs::Scene::Image& image, const ImageOptions& options,
                 Vs::Status& status);

/// Puts a picture of the active view on the desktop's clipboard at the end of the event. Does nothing in a
/// run without a window.
void copyActiveViewLater();

} // namespace Vu::Commands
