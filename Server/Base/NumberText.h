#pragma once

#include "Server/Base/Strings.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace Vs {

// Numbers as lines and files have them: whatever the locale.

/// As few digits as read back to exactly the same number.
template <class Number>
[[nodiscard]] std::wstring numberText(Number number)
{
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

/// Nothing if the text isn't wholly a number, or one that is too large.
template <class Number>
[[nodiscard]] std::optional<Number> readNumber(std::wstring_view text)
{
    const std::string narrow = Strings::narrow(text);
    const char* const last = narrow.data() + narrow.size();
    Number number{};
    const auto [end, error] = std::from_chars(narrow.data(), last, number);
    return error == std::errc() && end == last ? std::optional(number) : std::nullopt;
}

} // namespace Vs
