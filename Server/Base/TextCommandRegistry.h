#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextFormat.h"

#include <optional>
#include <set>
#include <unordered_map>

namespace Vs {

/// The areas and commands that exist, and the index over them. Registration happens while libraries load and
/// only notes the pointer; names are looked at when somebody asks first.
class TextCommandRegistry
{
public:
    struct Entry
    {
        TextCommand* command;
        std::optional<TextFormat> format; ///< None if the command's own is malformed, or empty.
    };

    std::vector<TextCommandSubjectArea*> areas;
    std::vector<TextCommand*> commands;

    /// Must be called whenever one of the lists changed.
    void changed() { m_indexed = false; }

    /// Null if there is none; of several with one name the first registered.
    const Entry* find(std::wstring_view area, std::wstring_view name);
    const Entry* find(const TextCommand& command) { return find(command.area(), command.name()); }
    TextCommandSubjectArea* findArea(std::wstring_view name) const;

    void validate() const;

private:
    void index();

    // Keyed by the texts that the commands hold, looked up without making any.
    using Names = std::unordered_map<std::wstring_view, Entry>;
    std::unordered_map<std::wstring_view, Names> m_areas;
    bool m_indexed = false;
};

/// The name among `names` that `wrong` was meant to be, or an empty text if none is near.
std::wstring nearestName(std::wstring_view wrong, const std::vector<std::wstring>& names);

/// The answer to `help`, `help <area>` and `help <area>.<name>`; `subject` is what stands behind `help`.
TextCommandResult helpOn(TextCommandRegistry& registry, std::wstring_view subject);

/// The flags that a help text names, with their slashes, as in "[/on][/off]".
std::set<std::wstring> flagsOf(const std::wstring& help);

/// The answer to a line that begins with the name of no command.
std::wstring unknownCommandMessage(TextCommandRegistry& registry, std::wstring_view word);

} // namespace Vs
