#pragma once

#include <string>

namespace Vs::Python {

/// The interpreter of the virtual environment that is active where the program was started (VIRTUAL_ENV), for
/// scripts to find what is installed there; empty if there is none. One that was made with a Python other
/// than `interpreter`, or that can't be read, causes a warning and is ignored: its libraries don't fit.
std::string activeEnvironment(const std::string& interpreter);

} // namespace Vs::Python
