#pragma once

#include "UI/Base/Program/CanvasRect.h"

#include <vector>

class QWidget;

namespace Vu {

/// Adds the parts of a widget that others of its window cover, in its own coordinates. Widgets transparent to
/// the mouse don't count.
void addCoveredParts(const QWidget& widget, std::vector<CanvasRect>& parts);

} // namespace Vu
