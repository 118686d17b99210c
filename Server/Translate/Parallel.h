#pragma once

#include <cstddef>
#include <functional>

namespace Vs::Translate {

/// Does a job for each index, on all processors; throws what one of them threw when all have ended. Plain
/// threads: what there is to do is a few long jobs, and bringing up a scheduler takes longer than a small
/// model does.
void forEachInParallel(size_t count, const std::function<void(size_t)>& job);

} // namespace Vs::Translate
