#pragma once

namespace Vu {

/// Whether what changes is to jump to its end: the user has taken animations away, here
/// (UIBaseOptionGroup::animateCamera) or for the whole desktop. Main thread only.
[[nodiscard]] bool motionIsReduced();

/// What the desktop's settings say, for whoever asks these. Until the first call they say nothing.
void desktopReducesMotion(bool value);

} // namespace Vu
