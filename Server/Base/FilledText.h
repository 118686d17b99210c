#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <utility>

namespace Vs {

/// A value to fill into a text: text, a character, or a whole number as plain digits. Other numbers are
/// formatted by whoever knows their unit and precision.
class FilledValue
{
public:
    FilledValue(std::wstring text) : m_text(std::move(text)) {}
    FilledValue(const wchar_t* text) : m_text(text) {}
    FilledValue(wchar_t character) : m_text(1, character) {}
    FilledValue(std::integral auto number) : m_text(std::to_wstring(number)) {}

    const std::wstring& text() const { return m_text; }

private:
    std::wstring m_text;
};

/// A text with `%1%`, `%2%`... replaced by the values in their order; `%%` is a percent sign. A translation
/// that lacks a placeholder, or has one too many, still gives a text.
std::wstring fillText(const std::wstring& text, std::initializer_list<FilledValue> values);

/// The same with the values one by one.
template <class... Values>
[[nodiscard]] std::wstring filledText(const std::wstring& text, const Values&... values)
{
    return fillText(text, {FilledValue(values)...});
}

} // namespace Vs
