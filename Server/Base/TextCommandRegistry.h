#pragma once

#include "Server/Base/Private/TextUsage.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TextFormat.h"

#include <optional>
#include <unordered_map>

namespace Vs {

/// The areas and commands that exist, and the index over them. Registration happens while libraries load and
/// only stores the pointer; names are examined at first use.
class TextCommandRegistry
{
public:
    struct Entry
    {
        TextCommand* command;
        std::optional<TextFormat> format; ///< None if the command's own is malformed, or empty.
        TextCommandSubjectArea::Checks checks = TextCommandSubjectArea::Checks::Nothing;
        mutable std::optional<TextUsage> usage = std::nullopt; ///< Made when a line is first checked.
    };

    std::vector<TextCommandSubjectArea*> areas;
    std::vector<TextCommand*> commands;

    /// Must be called whenever one of the lists changed.
    void changed() { m_indexed = false; }

    /// Null if there is none; of several with one name the first registered.
    [[nodiscard]] const Entry* find(std::wstring_view area, std::wstring_view name);
    [[nodiscard]] const Entry* find(const TextCommand& command)
    {
        return find(command.area(), command.name());
    }
    [[nodiscard]] TextCommandSubjectArea* findArea(std::wstring_view name) const;

    void validate() const;

private:
    void index();

    // Keyed by the commands' own texts; looked up without making new ones.
    using Names = std::unordered_map<std::wstring_view, Entry>;
    std::unordered_map<std::wstring_view, Names> m_areas;
    bool m_indexed = false;
};

} // namespace Vs
