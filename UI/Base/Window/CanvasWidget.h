#pragma once

#include "UI/Base/Program/Private/Display.h"

namespace Vu {

/// The widget of a canvas: an OpenGL widget where the platform supports OpenGL, else one that paints the
/// images of the offscreen renderer.
std::unique_ptr<CanvasSurface> makeCanvasSurface(GraphicsCanvas* canvas);

} // namespace Vu
