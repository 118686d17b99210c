#pragma once

#include "Server/Types/LengthUnit.h"

#include <string>

namespace Vu {

/// How the user's language calls the unit, in the plural: "millimetres".
[[nodiscard]] std::wstring unitName(const Vs::LengthUnit& unit);

} // namespace Vu
