#include "Server/Base/TranscriptSecrets.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptParameters.h"

#include <boost/algorithm/string/replace.hpp>

#include <functional>
#include <map>
#include <utility>

namespace Vs {

namespace {

/// The names, by the forms in which the texts may appear in lines.
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

std::wstring parameter(const std::wstring& name)
{
    return L"${" + name + L'}';
}

std::wstring replaced(std::wstring line, const std::function<std::wstring(const std::wstring&)>& standsFor)
{
    for (const auto& [text, name] : secrets()) {
        const std::wstring stands = standsFor(name);
        for (size_t place = line.find(text); place != std::wstring::npos;)
            if (standsAlone(line, place, text.size())) {
                line.replace(place, text.size(), stands);
                place = line.find(text, place + stands.size());
            } else {
                place = line.find(text, place + 1);
            }
    }
    return line;
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
    if (text == parameter(std::wstring(name)))
        return;
    for (const std::wstring& form : {std::wstring(text), inQuotes(text)})
        for (const std::wstring& written : {form, escapeParameters(form)})
            secrets()[written] = name;
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
    return replaced(std::move(line), parameter);
}

std::wstring TranscriptSecrets::hiddenInPython(std::wstring statement)
{
    assertMainThread();
    // Texts are literals: each is cut in two, and an empty half is dropped.
    const auto ask = [](const std::wstring& name) {
        return L"\" + quillet.parameters[\"" + name + L"\"] + \"";
    };
    std::wstring text = replaced(std::move(statement), ask);
    boost::replace_all(text, L"\"\" + quillet.parameters[", L"quillet.parameters[");
    boost::replace_all(text, L"\"] + \"\"", L"\"]");
    return text;
}

} // namespace Vs
