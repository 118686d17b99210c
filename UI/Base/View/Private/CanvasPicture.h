#pragma once

#include <vector>

namespace Vs {
class Status;
namespace Scene {
struct Image;
class ViewFragment;
} // namespace Scene
} // namespace Vs

namespace Vu {

class GraphicsCanvas;

/// Draws a canvas without a window's graphics, for a widget that paints the picture or for none, and tells
/// the frame sites. `moving` while the camera is on its way; `pixelRatio` as for Vs::Scene::ImageOptions.
/// False with an error in the status if that cannot be done here.
bool drawCanvas(const GraphicsCanvas& canvas, const std::vector<Vs::Scene::ViewFragment*>& fragments,
                bool moving, float pixelRatio, Vs::Scene::Image& image, Vs::Status& status);

} // namespace Vu
