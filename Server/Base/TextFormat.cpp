#include "Server/Base/TextFormat.h"

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"

#include <algorithm>

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

template <class Number>
std::optional<TextFormat::Value> valueOf(const std::optional<Number>& read)
{
    return read ? std::optional<TextFormat::Value>(*read) : std::nullopt;
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

std::variant<std::vector<TextFormat::Value>, size_t>
TextFormat::read(const std::vector<std::wstring>& parameters) const
{
    std::vector<Value> values;
    const size_t count = std::min(parameters.size(), m_types.size());
    values.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        std::optional<Value> value = read(m_types[i], parameters[i]);
        if (!value)
            return i;
        values.push_back(*value);
    }
    return values;
}

std::optional<TextFormat::Value> TextFormat::read(Type type, std::wstring_view text)
{
    switch (type) {
    case Type::Text:
        return Value();
    case Type::Real:
        return valueOf(readNumber<double>(text));
    case Type::Integer:
        return valueOf(readNumber<long long>(text));
    case Type::Vector:
    case Type::Point:
        return valueOf(readTriple(text));
    }
    return std::nullopt;
}

const char* TextFormat::expectation(Type type)
{
    return kTypes[static_cast<size_t>(type)].expectation;
}

std::wstring TextFormat::refusal(Type type, size_t index, std::wstring text)
{
    constexpr size_t kShown = 60;
    if (text.size() > kShown)
        text = text.substr(0, kShown) + L"...";
    return L"parameter " + std::to_wstring(index + 1) + L" must be " + Strings::widen(expectation(type)) +
           L", not \"" + text + L"\"";
}

} // namespace Vs
