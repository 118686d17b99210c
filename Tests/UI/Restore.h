#pragma once

namespace UiTests {

/// Restores what a test may have changed and what isn't destroyed with its documents and windows: the user's
/// options, alerts and notifications, the list of recent documents and the mouse pointer, which is over no
/// window afterwards.
void restore();

} // namespace UiTests
