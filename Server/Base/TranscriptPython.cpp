#include "Server/Base/TranscriptPython.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Private/TextLine.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <vector>

namespace Vs {

namespace {

constexpr std::array kKeywords = {
    L"False", L"None",   L"True",   L"and",  L"as",     L"assert", L"async",    L"await",   L"break",
    L"class", L"def",    L"del",    L"elif", L"else",   L"except", L"finally",  L"for",     L"from",
    L"if",    L"import", L"in",     L"is",   L"lambda", L"global", L"nonlocal", L"not",     L"or",
    L"pass",  L"raise",  L"return", L"try",  L"while",  L"with",   L"yield",    L"continue"};

bool isNameCharacter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_';
}

bool isPythonName(std::wstring_view text)
{
    return !text.empty() && !std::iswdigit(static_cast<wint_t>(text.front())) &&
           std::all_of(text.begin(), text.end(), isNameCharacter) &&
           std::find(kKeywords.begin(), kKeywords.end(), text) == kKeywords.end();
}

std::wstring literal(std::wstring_view text)
{
    constexpr const wchar_t* kDigits = L"0123456789abcdef";
    std::wstring result = L"\"";
    for (const wchar_t character : text) {
        if (character == L'"' || character == L'\\')
            result += {L'\\', character};
        else if (character < 0x20 || character == 0x7f)
            result += {L'\\', L'x', kDigits[character >> 4], kDigits[character & 15]};
        else if (character >= 0xDC80 && character <= 0xDCFF) // A byte of a file's name.
            result += {L'\\', L'u', L'd', L'c', kDigits[character >> 4 & 15], kDigits[character & 15]};
        else
            result += character;
    }
    return result + L'"';
}

/// Empty if the line is not a call of a function that Python can name.
std::wstring callOf(std::wstring_view line)
{
    TextLine words(line);
    words.skipBlanks();
    const std::wstring_view command = words.plainWord();
    const size_t dot = command.find(L'.');
    if (dot == std::wstring_view::npos || !isPythonName(command.substr(0, dot)) ||
        !isPythonName(command.substr(dot + 1)))
        return {};
    std::vector<std::wstring> parameters, flags;
    std::wstring word;
    while (words.skipBlanks()) {
        if (words.next(word) == TextLine::Word::Parameter)
            parameters.push_back(literal(word));
        else if (isPythonName(word))
            flags.push_back(word + L"=True");
        else
            return {};
    }
    // Python accepts a keyword once, after everything else.
    std::sort(flags.begin(), flags.end());
    flags.erase(std::unique(flags.begin(), flags.end()), flags.end());
    parameters.insert(parameters.end(), flags.begin(), flags.end());
    std::wstring call(command);
    call += L'(';
    for (size_t i = 0; i < parameters.size(); ++i)
        call += (i > 0 ? L", " : L"") + parameters[i];
    return call + L')';
}

} // namespace

std::wstring TranscriptPython::statement(std::wstring_view line)
{
    const size_t start = line.find_first_not_of(L" \t");
    if (start == std::wstring_view::npos || line[start] == L'#')
        return std::wstring(line);
    std::wstring call;
    try {
        call = callOf(line);
    } catch (const Exception&) {
        // A quote that isn't closed: the line fails when it is run, and says so then.
    }
    return call.empty() ? L"quillet.run(" + literal(line) + L")" : call;
}

std::wstring TranscriptPython::moduleOf(std::wstring_view statement)
{
    const size_t end = statement.find(L'.');
    const std::wstring_view name = statement.substr(0, end == std::wstring_view::npos ? 0 : end);
    return isPythonName(name) && name != L"quillet" ? std::wstring(name) : std::wstring();
}

} // namespace Vs
