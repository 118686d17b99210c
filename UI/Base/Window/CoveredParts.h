#pragma once

#include "UI/Base/Program/CanvasRect.h"

#include <vector>

class QWidget;

namespace Vu {

/// Adds the parts of a widget that others of its window lie over, in its own coordinates. What the mouse goes
/// through doesn't count.
void addCoveredParts(const QWidget& widget, std::vector<CanvasRect>& parts);

} // namespace Vu
