#pragma once

#include <functional>

namespace Rendra {

/// Runs what starts a driver. Returns false if that crashed: the calling thread goes on, but the driver may
/// hold locks for good, so that nothing of it may be called any more. Costs nothing that could be measured.
/// One thread at a time.
[[nodiscard]] bool survives(const std::function<void()>& start);

} // namespace Rendra
