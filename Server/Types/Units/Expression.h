#pragma once

#include "Server/Types/Units/Unit.h"

#include <optional>

namespace Vs::Units {

/// Reads what a person types for a number with a unit: "12.5 mm", "1/2 in", "3 1/2 in", "3*(2 in + 4 mm)",
/// "sqrt(2)*10", "45 deg", "20 mm^2".
///
/// There are + - * / and ^ with a whole number behind it, parentheses, the functions sqrt, abs, sin, cos,
/// tan, asin, acos and atan, and pi. Decimals have a point. A unit behind a quotient of plain numbers is that
/// of the quotient: "1/2 in" is half an inch. A result without a unit is in `unit`, and so is a plain number
/// that is added to a number of `unit`'s quantity; what a sine is taken of is in degrees without one.
///
/// Returns the value in the base unit of `unit`'s quantity. Empty if the text makes no sense, measures
/// something else, divides by zero or becomes too large; `why` then is a sentence for the user that says what
/// is wrong and where. Main thread.
std::optional<double> evaluate(const std::wstring& text, const Unit& unit, std::wstring& why);

} // namespace Vs::Units
