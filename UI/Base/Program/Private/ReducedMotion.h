#pragma once

namespace Vu {

/// Whether animations should jump to their end: the user has switched them off, here
/// (UIBaseOptionGroup::animateCamera) or for the whole desktop. Main thread only.
[[nodiscard]] bool motionIsReduced();

/// What the desktop's settings say, for whoever asks these. Until the first call they say nothing.
void desktopReducesMotion(bool value);

} // namespace Vu
