#pragma once

#include <string>

namespace Vs::Python {

/// What a script file contains. Throws Vs::Exception, which names the file, if it can't be read or isn't
/// text.
[[nodiscard]] std::string readScript(const std::string& path);

} // namespace Vs::Python
