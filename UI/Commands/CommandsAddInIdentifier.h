#pragma once

#include <string>

namespace Vu {

/// The identifier of the commands add-in: "Commands".
inline std::string CommandsAddInIdentifier()
{
    return "Commands";
}

} // namespace Vu
