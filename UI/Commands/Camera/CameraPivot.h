#pragma once

namespace Vu::Commands {

/// Shows the marker at the pivot of the active view's camera, if that camera has one and the user's option is
/// on. With `cancelPendingHide`, a marker that waits to be hidden stays. Returns whether the marker is shown.
bool showCameraPivot(bool cancelPendingHide);

/// Hides the marker when a second has passed since the last call. Does nothing if it isn't shown.
void hideCameraPivotDelayed();

} // namespace Vu::Commands
