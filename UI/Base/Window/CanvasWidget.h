#pragma once

#include "UI/Base/Program/Private/Display.h"

namespace Vu {

/// The widget of a canvas: an OpenGL one where the platform has OpenGL, else one that paints the pictures of
/// the windowless renderer.
std::unique_ptr<CanvasSurface> makeCanvasSurface(GraphicsCanvas* canvas);

} // namespace Vu
