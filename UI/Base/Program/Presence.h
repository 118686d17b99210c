#pragma once

namespace Vu {

/// Whether a dialog would be seen and answered: a window is shown, and a person sits before it. Main thread
/// only.
[[nodiscard]] bool somebodyIsThere();

} // namespace Vu
