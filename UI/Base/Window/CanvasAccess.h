#pragma once

class QWidget;

namespace Vu {

class GraphicsCanvas;

/// Tells assistive technology that the widget shows the canvas, and exposes the orientation cube in it, with
/// its six sides as actions.
void tellOfCanvas(QWidget* widget, const GraphicsCanvas& canvas);

} // namespace Vu
