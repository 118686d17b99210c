#pragma once

#include "Server/Types/Units/Private/Magnitude.h"

namespace Vs::Units {

/// Reads and computes an expression; see `evaluate`. Throws an ExpressionError. Private to this folder.
Magnitude parse(const std::wstring& text, const Unit& field);

} // namespace Vs::Units
