#include "Server/Base/TextCommandHelp.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandRegistry.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <map>

namespace Vs {

namespace {

std::wstring shown(std::wstring_view word)
{
    constexpr size_t kShown = 60;
    return word.size() > kShown ? std::wstring(word.substr(0, kShown)) + L"..." : std::wstring(word);
}

std::vector<std::wstring> areaNames(const TextCommandRegistry& registry)
{
    std::vector<std::wstring> names;
    names.reserve(registry.areas.size());
    for (const TextCommandSubjectArea* area : registry.areas)
        names.push_back(area->name());
    return names;
}

std::wstring firstLine(const std::wstring& text)
{
    return text.substr(0, text.find(L'\n'));
}

std::wstring helpOnAll(const TextCommandRegistry& registry)
{
    std::map<std::wstring, std::wstring> rows;
    for (const TextCommandSubjectArea* area : registry.areas)
        rows.emplace(area->name(), area->description());
    std::wstring text = L"A line is <area>.<name>, its parameters and its /flags. The areas are:";
    for (const auto& [name, description] : rows)
        text.append(L"\n  ").append(name).append(L"  ").append(description);
    return text + L"\nhelp <area> lists the commands of one, help <area>.<name> describes a command.";
}

std::wstring helpOnArea(const TextCommandRegistry& registry, const TextCommandSubjectArea& area)
{
    std::map<std::wstring, std::wstring> rows;
    for (const TextCommand* command : registry.commands)
        if (command->area() == area.name() && command->visible())
            rows.emplace(command->name(), command->help());
    std::wstring text = area.name() + L": " + area.description();
    for (const auto& [name, help] : rows)
        text += L"\n  " + area.name() + L'.' + name + L"  " + firstLine(help);
    return text;
}

} // namespace

std::wstring nearestName(std::wstring_view wrong, const std::vector<std::wstring>& names)
{
    // A megabyte of nonsense resembles nothing and need not be compared.
    if (wrong.empty() || wrong.size() > 100)
        return {};
    const std::wstring* nearest = nullptr;
    size_t least = std::max<size_t>(1, wrong.size() / 3) + 1;
    for (const std::wstring& name : names) {
        const size_t away = Strings::editDistance(wrong, name);
        if (away < least) {
            least = away;
            nearest = &name;
        }
    }
    return nearest ? *nearest : std::wstring();
}

TextCommandResult helpOn(TextCommandRegistry& registry, std::wstring_view subject)
{
    if (subject.empty())
        return {0u, helpOnAll(registry)};
    const size_t dot = subject.find(L'.');
    if (dot == std::wstring_view::npos) {
        if (const TextCommandSubjectArea* area = registry.findArea(subject))
            return {0u, helpOnArea(registry, *area)};
    } else if (const auto* entry = registry.find(subject.substr(0, dot), subject.substr(dot + 1))) {
        return {0u, std::wstring(subject) + L"  " + entry->command->help()};
    }
    return {1u, unknownCommandMessage(registry, subject)};
}

std::wstring unknownCommandMessage(TextCommandRegistry& registry, std::wstring_view word)
{
    const auto suggest = [](const std::wstring& name) {
        return name.empty() ? std::wstring() : L" Did you mean \"" + name + L"\"?";
    };
    const size_t dot = word.find(L'.');
    const std::wstring_view area = word.substr(0, dot);
    if (!registry.findArea(area)) {
        const std::wstring near = nearestName(area, areaNames(registry));
        if (dot == std::wstring_view::npos && near.empty())
            return L"\"" + shown(word) + L"\" is not a command: a line begins with <area>.<name>. Try: help";
        return L"There is no text command area \"" + shown(area) + L"\"." + suggest(near);
    }
    if (dot == std::wstring_view::npos || dot + 1 == word.size())
        return L"\"" + shown(word) + L"\" must be followed by the name of a command. Try: help " +
               std::wstring(area);
    std::vector<std::wstring> names;
    for (const TextCommand* command : registry.commands)
        if (command->area() == area)
            names.push_back(command->name());
    const std::wstring near = nearestName(word.substr(dot + 1), names);
    return L"There is no text command \"" + shown(word) + L"\"." +
           suggest(near.empty() ? near : std::wstring(area) + L'.' + near);
}

std::wstring unknownFlagMessage(const TextCommand& command, std::wstring_view flag,
                                const std::vector<std::wstring>& flags)
{
    std::wstring message = command.area() + L'.' + command.name() + L" has no flag /" + shown(flag) + L'.';
    if (const std::wstring near = nearestName(flag, flags); !near.empty())
        return message + L" Did you mean /" + near + L'?';
    if (!flags.empty())
        message += L" There are: /" + boost::algorithm::join(flags, L", /") + L'.';
    return message + L" A path that begins with / needs quotes: \"/" + shown(flag) + L"\".";
}

std::wstring surplusMessage(const TextCommand& command, size_t most, std::wstring_view surplus)
{
    const std::wstring limit = most == 0   ? L"no parameters"
                               : most == 1 ? L"one parameter"
                                           : std::to_wstring(most) + L" parameters at most";
    return command.area() + L'.' + command.name() + L" takes " + limit + L", and \"" + shown(surplus) +
           L"\" is one more. Text with blanks needs quotes.";
}

} // namespace Vs
