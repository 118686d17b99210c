#pragma once

#include <string>

namespace Quillet {

/// The call stack of a crashed program (tellStackOfCrash), one call per line, with the names of its functions
/// as far as they can be found; empty if there is none. Functions without an exported name are looked up by
/// addr2line, if installed.
[[nodiscard]] std::string readableStack(const std::string& errors);

} // namespace Quillet
