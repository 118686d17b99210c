#pragma once

class QWidget;

namespace Vu {

class GraphicsCanvas;

/// The widget of a canvas: an OpenGL one where the platform has OpenGL, else one that paints the pictures of
/// the windowless renderer.
QWidget* makeCanvasWidget(GraphicsCanvas* canvas, QWidget* parent);

} // namespace Vu
