#pragma once

// Camera movements in passing refer to what lies under the pointer. The commands that do it turn and scale
// about the target and the pivot, so these are moved there first, without changing the picture.

#include "Server/Base/Point2.h"

namespace Vu {

class GraphicsView;

/// Brings the target of the model's camera to the depth of what lies at a place of the view's canvas, in
/// logical pixels. Beside the model, and without one, the camera stays as it is. Main thread only.
void aimAt(GraphicsView& view, const Vs::Point2& place);

/// The same for a turn. With the user's options `cameraPivotEnabled` and `pivotUnderPointer`, what lies there
/// also becomes the pivot; beside the model, one that is out of sight is given up.
void aimTurnAt(GraphicsView& view, const Vs::Point2& place);

} // namespace Vu
