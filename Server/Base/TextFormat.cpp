#include "Server/Base/TextFormat.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Private/TextLine.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Vs {

namespace {

struct TypeRow
{
    std::string_view item;
    TextFormat::Type type;
    const char* expectation;
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {"%s",  TextFormat::Type::Text,    "a text"},
    {"%f",  TextFormat::Type::Real,    "a number"},
    {"%d",  TextFormat::Type::Integer, "a whole number"},
    {"%v",  TextFormat::Type::Vector,  "a vector, as in 0,0,1"},
    {"%p3", TextFormat::Type::Point,   "a point, as in 10,20.5,0"},
};
// clang-format on

std::wstring_view trimmed(std::wstring_view text)
{
    while (!text.empty() && TextLine::isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && TextLine::isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// The characters as narrow text for from_chars; none is longer than a number reasonably is.
template <class Number>
bool reads(std::wstring_view text, Number& value)
{
    char narrow[64];
    if (!text.empty() && text.front() == L'+' && text.size() > 1 && text[1] != L'-')
        text.remove_prefix(1);
    if (text.empty() || text.size() > sizeof narrow)
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] < 0 || text[i] > 127)
            return false;
        narrow[i] = static_cast<char>(text[i]);
    }
    const char* end = narrow + text.size();
    const auto [stop, error] = std::from_chars(narrow, end, value);
    return error == std::errc() && stop == end;
}

bool isReal(std::wstring_view text)
{
    double value;
    return reads(text, value) && std::isfinite(value);
}

bool isInteger(std::wstring_view text)
{
    long long value;
    return reads(text, value);
}

bool isTriple(std::wstring_view text)
{
    text = trimmed(text);
    if (text.size() >= 2 && text.front() == L'(' && text.back() == L')')
        text = text.substr(1, text.size() - 2);
    for (int i = 0; i < 3; ++i) {
        const size_t comma = text.find(L',');
        if ((comma == std::wstring_view::npos) != (i == 2) || !isReal(trimmed(text.substr(0, comma))))
            return false;
        if (i < 2)
            text.remove_prefix(comma + 1);
    }
    return true;
}

bool matches(TextFormat::Type type, std::wstring_view text)
{
    switch (type) {
    case TextFormat::Type::Text:
        return true;
    case TextFormat::Type::Real:
        return isReal(text);
    case TextFormat::Type::Integer:
        return isInteger(text);
    case TextFormat::Type::Vector:
    case TextFormat::Type::Point:
        return isTriple(text);
    }
    return false;
}

} // namespace

TextFormat::TextFormat(std::string_view format)
{
    for (std::string_view rest = format; !rest.empty();) {
        const auto* row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                       [&](const TypeRow& each) { return rest.starts_with(each.item); });
        if (row == std::end(kTypes))
            throw Exception("The parameter format \"" + std::string(format) + "\" is malformed at \"" +
                            std::string(rest) + "\".");
        m_types.push_back(row->type);
        rest.remove_prefix(row->item.size());
    }
}

int TextFormat::firstWrong(const std::vector<std::wstring>& parameters) const
{
    const size_t count = std::min(parameters.size(), m_types.size());
    for (size_t i = 0; i < count; ++i)
        if (!matches(m_types[i], parameters[i]))
            return static_cast<int>(i);
    return -1;
}

const char* TextFormat::expectation(Type type)
{
    return kTypes[static_cast<size_t>(type)].expectation;
}

} // namespace Vs
