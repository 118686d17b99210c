#include "Server/Base/TranscriptSecrets.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptFile.h"

#include <map>

namespace Vs {

namespace {

/// By the forms in which they may stand in lines.
std::map<std::wstring, std::wstring, std::less<>>& secrets()
{
    static std::map<std::wstring, std::wstring, std::less<>> known;
    return known;
}

bool bounds(wchar_t character)
{
    return character == L' ' || character == L'"' || character == L'=' || character == L'\t' ||
           character == L',' || character == L'(' || character == L')';
}

bool standsAlone(const std::wstring& line, size_t place, size_t length)
{
    const size_t end = place + length;
    return (place == 0 || bounds(line[place - 1])) && (end == line.size() || bounds(line[end]));
}

std::wstring inQuotes(std::wstring_view text)
{
    const std::wstring quoted = Strings::quote(text);
    return quoted.starts_with(L'"') ? quoted.substr(1, quoted.size() - 2) : quoted;
}

} // namespace

void TranscriptSecrets::keep(std::wstring_view name, std::wstring_view text)
{
    assertMainThread();
    if (text.empty())
        return;
    const std::wstring stands = L"${" + std::wstring(name) + L'}';
    if (text == stands)
        return;
    for (const std::wstring& form : {std::wstring(text), inQuotes(text)})
        for (const std::wstring& written : {form, escapeParameters(form)})
            secrets()[written] = stands;
}

void TranscriptSecrets::keepIfNamedSo(std::wstring_view name, std::wstring_view text)
{
    for (const wchar_t* ending : {L"TOKEN", L"SECRET", L"PASSWORD", L"HANDLE", L"KEY"})
        if (name.ends_with(ending))
            keep(name, text);
}

std::wstring TranscriptSecrets::hidden(std::wstring line)
{
    assertMainThread();
    for (const auto& [text, stands] : secrets())
        for (size_t place = line.find(text); place != std::wstring::npos;)
            if (standsAlone(line, place, text.size())) {
                line.replace(place, text.size(), stands);
                place = line.find(text, place + stands.size());
            } else {
                place = line.find(text, place + 1);
            }
    return line;
}

} // namespace Vs
