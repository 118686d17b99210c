#pragma once

#include <cstddef>
#include <functional>

namespace Vs::Translate {

/// Runs a job for each index, on all processors; when all have ended, rethrows what one of them threw. Plain
/// threads: there are only a few long jobs, and starting a scheduler takes longer than a small model does.
void forEachInParallel(size_t count, const std::function<void(size_t)>& job);

} // namespace Vs::Translate
