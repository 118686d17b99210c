#pragma once

#include <string>

namespace Vu {

/// The identifier of the commands add-in: "Commands".
std::string CommandsAddInIdentifier();

} // namespace Vu
