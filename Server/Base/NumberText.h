#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace Vs {

// Numbers as written in lines and files, independent of the locale.

/// As few digits as read back to exactly the same number.
template <class Number>
[[nodiscard]] std::wstring numberText(Number number)
{
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

/// The number that the whole of `text` represents; a plus sign is allowed. Nothing if it has another form,
/// too large for the type, infinite, not a number, or longer than a number reasonably is.
template <class Number>
[[nodiscard]] std::optional<Number> readNumber(std::wstring_view text)
{
    // from_chars takes no plus sign.
    if (text.starts_with(L'+') && !text.starts_with(L"+-"))
        text.remove_prefix(1);
    char narrow[128];
    if (text.size() > sizeof narrow)
        return std::nullopt;
    char* last = narrow;
    for (const wchar_t letter : text)
        *last++ = letter >= 0 && letter < 128 ? static_cast<char>(letter) : '?';
    Number number{};
    const auto [end, error] = std::from_chars(narrow, last, number);
    if (error != std::errc() || end != last)
        return std::nullopt;
    if constexpr (std::is_floating_point_v<Number>)
        if (!std::isfinite(number))
            return std::nullopt;
    return number;
}

/// Three numbers with commas between them, as points and vectors are written, in brackets or not. Blanks are
/// allowed around each.
[[nodiscard]] std::optional<std::array<double, 3>> readTriple(std::wstring_view text);

} // namespace Vs
