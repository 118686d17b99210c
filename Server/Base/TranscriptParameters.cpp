#include "Server/Base/TranscriptParameters.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"

#include <optional>

namespace Vs {

namespace {

constexpr std::wstring_view kNameCharacters =
    L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
constexpr std::wstring_view kOtherwise = L":-";

/// A parameter in a line.
struct Reference
{
    std::wstring_view name;
    std::optional<std::wstring_view> otherwise;
    size_t length = 0; ///< Of all of it, from `$` to `}`.
};

/// The one at the front of the text, or nothing.
std::optional<Reference> referenceAt(std::wstring_view text)
{
    if (!text.starts_with(L"${"))
        return std::nullopt;
    const size_t end = text.find_first_not_of(kNameCharacters, 2);
    if (end == std::wstring_view::npos || end == 2)
        return std::nullopt;
    Reference found{text.substr(2, end - 2), std::nullopt, end + 1};
    if (text[end] == L'}')
        return found;
    const size_t close = text.find(L'}', end);
    if (!text.substr(end).starts_with(kOtherwise) || close == std::wstring_view::npos)
        return std::nullopt;
    found.otherwise = text.substr(end + kOtherwise.size(), close - end - kOtherwise.size());
    found.length = close + 1;
    return found;
}

std::wstring escaped(std::wstring_view value)
{
    std::wstring text;
    for (const wchar_t character : value) {
        if (character == L'"' || character == L'\\')
            text.push_back(L'\\');
        text.push_back(character);
    }
    return text;
}

std::wstring valueOf(const Reference& reference, const TranscriptParameters& parameters)
{
    const std::string name = Strings::narrow(reference.name);
    const auto found = parameters.find(name);
    if (found != parameters.end())
        return Strings::fromBytes(found->second);
    if (!reference.otherwise)
        throw Exception("There is no parameter \"" + name + "\": give it with --set " + name +
                        "=VALUE, or say in the line what holds without it, ${" + name + ":-VALUE}.");
    return std::wstring(*reference.otherwise);
}

} // namespace

std::wstring substituteParameters(std::wstring_view line, const TranscriptParameters& parameters)
{
    std::wstring result;
    bool inQuotes = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const wchar_t character = line[i];
        const auto reference = character == L'$' ? referenceAt(line.substr(i)) : std::nullopt;
        if (character == L'$' && line.substr(i).starts_with(L"$${")) {
            result += L"${";
            i += 2;
        } else if (reference) {
            const std::wstring value = valueOf(*reference, parameters);
            if (inQuotes)
                result += escaped(value);
            else if (!value.empty())
                result += Strings::quote(value);
            i += reference->length - 1;
        } else if (inQuotes && character == L'\\' && i + 1 < line.size()) {
            result.push_back(character);
            result.push_back(line[++i]);
        } else {
            inQuotes ^= character == L'"';
            result.push_back(character);
        }
    }
    return result;
}

std::wstring escapeParameters(std::wstring_view line)
{
    std::wstring result;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line.substr(i).starts_with(L"${"))
            result.push_back(L'$');
        result.push_back(line[i]);
    }
    return result;
}

std::vector<NamedParameter> parametersIn(std::wstring_view line)
{
    std::vector<NamedParameter> found;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line.substr(i).starts_with(L"$${"))
            i += 2;
        else if (const auto reference = referenceAt(line.substr(i))) {
            found.push_back({Strings::narrow(reference->name),
                             std::wstring(reference->otherwise.value_or(L"")), !reference->otherwise});
            i += reference->length - 1;
        }
    }
    return found;
}

bool readParameter(std::string_view text, TranscriptParameters& parameters)
{
    const size_t equals = text.find('=');
    if (equals == 0 || equals == std::string_view::npos)
        return false;
    parameters[std::string(text.substr(0, equals))] = text.substr(equals + 1);
    return true;
}

} // namespace Vs
