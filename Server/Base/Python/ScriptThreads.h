#pragma once

namespace Vs::Python {

/// Waits a little for the threads that scripts have left running. Returns whether all have ended. The
/// interpreter is held.
[[nodiscard]] bool scriptThreadsEnded();

} // namespace Vs::Python
