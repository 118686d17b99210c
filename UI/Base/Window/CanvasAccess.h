#pragma once

class QWidget;

namespace Vu {

class GraphicsCanvas;

/// Tells assistive programs that the widget shows the canvas, and of the orientation cube in it, whose six
/// sides are its actions.
void tellOfCanvas(QWidget* widget, const GraphicsCanvas& canvas);

} // namespace Vu
