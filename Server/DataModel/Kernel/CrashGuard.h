#pragma once

#include <functional>

namespace Vs::Kernel {

/// Runs work in which the kernel may break down: false if it did so by a signal, such as that of an address
/// that isn't there. What the work held then is lost, memory included; so it holds nothing that others use.
/// Exceptions pass. One thread at a time, and the work makes no threads of its own.
bool survives(const std::function<void()>& work);

} // namespace Vs::Kernel
