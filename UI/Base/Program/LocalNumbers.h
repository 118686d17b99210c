#pragma once

#include <string>

namespace Vu {

/// A text of numbers with units, such as "1.5 mm", as the user's locale writes it: "1,5 mm" where the decimal
/// sign is a comma. Numbers are not grouped, so that they can be copied. For the window alone: lines of text,
/// recordings and files have the point everywhere.
[[nodiscard]] std::wstring localNumbers(const std::wstring& text);

/// What a user typed, in any of the two ways, with the point. A text with both signs is returned as it is,
/// since nobody knows which of them groups.
[[nodiscard]] std::wstring plainNumbers(const std::wstring& text);

} // namespace Vu
