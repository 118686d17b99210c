#pragma once

#include "UI/Base/Program/CanvasRect.h"

#include <vector>

namespace Vu {

/// The rectangle of a canvas that none of `covered` reaches into and in which something of this shape, width
/// by height, becomes largest; of several, the one nearest to the middle. All of the canvas where so little
/// is free that it is better to be half hidden.
[[nodiscard]] CanvasRect freeArea(double width, double height, const std::vector<CanvasRect>& covered,
                                  double aspect);

} // namespace Vu
