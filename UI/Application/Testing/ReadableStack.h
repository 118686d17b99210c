#pragma once

#include <string>

namespace Quillet {

/// The calls that a crashed program has told (tellStackOfCrash), one a line, with the names of its functions
/// as far as they can be found; empty if there are none. Functions without a name for others are looked up by
/// addr2line, where it is installed.
[[nodiscard]] std::string readableStack(const std::string& errors);

} // namespace Quillet
