#include "Server/Base/TextCommandRegistry.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"

#include <algorithm>
#include <set>

namespace Vs {

void TextCommandRegistry::index()
{
    m_areas.clear();
    for (TextCommand* command : commands) {
        const TextCommandSubjectArea* area = findArea(command->area());
        Entry entry{command, std::nullopt, area ? area->checks() : TextCommandSubjectArea::Checks::Nothing};
        try {
            if (!command->format().empty())
                entry.format.emplace(command->format());
        } catch (const Exception&) {
            // validate() reports it; until then the command checks its parameters by itself.
        }
        m_areas[command->area()].emplace(command->name(), std::move(entry));
    }
    m_indexed = true;
}

const TextCommandRegistry::Entry* TextCommandRegistry::find(std::wstring_view area, std::wstring_view name)
{
    if (!m_indexed)
        index();
    const auto names = m_areas.find(area);
    if (names == m_areas.end())
        return nullptr;
    const auto found = names->second.find(name);
    return found == names->second.end() ? nullptr : &found->second;
}

TextCommandSubjectArea* TextCommandRegistry::findArea(std::wstring_view name) const
{
    const auto found =
        std::find_if(areas.begin(), areas.end(), [&](auto* area) { return area->name() == name; });
    return found == areas.end() ? nullptr : *found;
}

void TextCommandRegistry::validate() const
{
    const auto isWord = [](const std::wstring& text) {
        return !text.empty() && std::all_of(text.begin(), text.end(), [](wchar_t c) {
            return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') ||
                   c == L'_';
        });
    };
    std::set<std::wstring> areaNames, names;
    for (const TextCommandSubjectArea* area : areas) {
        if (!isWord(area->name()))
            throw Exception(L"A text command area is called \"" + area->name() +
                            L"\": its name must be letters, digits and _.");
        if (!areaNames.insert(area->name()).second)
            throw Exception(L"There are two text command areas called \"" + area->name() + L"\".");
    }
    for (const TextCommand* command : commands) {
        const std::wstring name = command->area() + L'.' + command->name();
        if (!isWord(command->name()))
            throw Exception(L"The text command \"" + name + L"\" needs a name of letters, digits and _.");
        if (!areaNames.contains(command->area()))
            throw Exception(L"The text command \"" + name + L"\" lies in an area that does not exist.");
        if (!names.insert(name).second)
            throw Exception(L"There are two text commands called \"" + name + L"\".");
        if (command->help().empty())
            throw Exception(L"The text command \"" + name + L"\" has no help text.");
        try {
            TextFormat(command->format());
        } catch (const Exception& error) {
            throw Exception(L"The text command \"" + name + L"\": " + error.message());
        }
    }
}

} // namespace Vs
