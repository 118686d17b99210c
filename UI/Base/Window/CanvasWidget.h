#pragma once

#include "UI/Base/Program/Private/Display.h"

namespace Vu {

/// The widget of a canvas: an OpenGL widget where the platform supports OpenGL, else one that paints the
/// images of the offscreen renderer.
std::unique_ptr<CanvasSurface> makeCanvasSurface(GraphicsCanvas* canvas);

/// Draws the canvases of a window as they are once the camera stands still and the finer meshes that they
/// need are there.
void settleCanvases(const QWidget* window);

} // namespace Vu
