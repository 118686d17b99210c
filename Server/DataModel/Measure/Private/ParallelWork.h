#pragma once

#include "Server/Base/Progress.h"

#include <cstddef>
#include <functional>

namespace Vs {

/// Runs a job for each index on all processors, while the calling thread shows progress from one fraction to
/// another. False if the person cancelled: then some jobs were not begun. Rethrows what a job threw. Main
/// thread.
[[nodiscard]] bool runInParallel(ProgressScope& progress, double from, double to, size_t count,
                                 const std::function<void(size_t)>& job);

} // namespace Vs
