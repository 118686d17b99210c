#include "Server/Base/NumberText.h"

#include "Server/Base/Private/TextLine.h"

namespace Vs {

namespace {

std::wstring_view trimmed(std::wstring_view text)
{
    while (!text.empty() && TextLine::isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && TextLine::isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace

std::optional<std::array<double, 3>> readTriple(std::wstring_view text)
{
    text = trimmed(text);
    if (text.starts_with(L'(') && text.ends_with(L')'))
        text = text.substr(1, text.size() - 2);
    std::array<double, 3> values;
    for (size_t i = 0; i < values.size(); ++i) {
        const size_t comma = text.find(L',');
        const auto number = readNumber<double>(trimmed(text.substr(0, comma)));
        const bool last = i + 1 == values.size();
        if (!number || (comma == text.npos) != last)
            return std::nullopt;
        values[i] = *number;
        if (!last)
            text.remove_prefix(comma + 1);
    }
    return values;
}

} // namespace Vs
