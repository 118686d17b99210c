#pragma once

#include "Server/Geometry/GkPoint3d.h"

#include <string>
#include <string_view>

/// Text forms of points and vectors: three numbers with commas between, as "1,2.5,-3e10". The numbers are
/// written with as few digits as read back to exactly the same values, and never with the comma of a locale.
namespace Vs::Types {

[[nodiscard]] std::wstring Point3dToString(const GkPoint3d& point);
[[nodiscard]] std::wstring Vector3dToString(const GkVector3d& vector);

/// Reads the text form; blanks around the numbers and one pair of parentheses around the whole are allowed.
/// Returns false, and leaves the result alone, if the text is anything else or a number isn't finite.
[[nodiscard]] bool StringToPoint3d(std::wstring_view text, GkPoint3d& result);
[[nodiscard]] bool StringToVector3d(std::wstring_view text, GkVector3d& result);

} // namespace Vs::Types
