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

/// The view's size on the screen; a usual one for a view that no canvas shows, as in a run without a window.
void takeWindowSize(const GraphicsView& view, ImageOptions& options);

/// Draws the view as a picture to take away: without ground, dome and grid, whatever the user's options are,
/// which are the same afterwards. Writes it to the file as GraphicsView::renderImage does.
bool captureView(GraphicsView& view, Vs::ImageResource& file, const ImageOptions& options,
                 Vs::Status& status);
/// The same into memory. False, with the reason, if it could not be drawn.
bool captureView(const GraphicsView& view, Vs::Scene::Image& image, const ImageOptions& options,
                 Vs::Status& status);

/// Puts a picture of the active view on the desktop's clipboard at the end of the event. Does nothing in a
/// run without a window.
void copyActiveViewLater();

} // namespace Vu::Commands
