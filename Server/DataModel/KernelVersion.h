#pragma once

#include <string>

namespace Vs {

/// The version of the geometry kernel that the program was built with, as "7.6.3"; the kernel isn't loaded
/// for it.
[[nodiscard]] std::string kernelVersion();

} // namespace Vs
