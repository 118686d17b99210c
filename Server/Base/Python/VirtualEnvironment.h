#pragma once

#include <string>

namespace Vs::Python {

/// The interpreter of the virtual environment that is active where the program was started (VIRTUAL_ENV), for
/// scripts to find what is installed there; empty if there is none. One that was made of another Python than
/// `interpreter`, or that can't be read, is told as a warning and left alone: its libraries don't fit.
std::string activeEnvironment(const std::string& interpreter);

} // namespace Vs::Python
