#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs {
class UniqueString;
}

namespace Vu {

class CommandDefinition;

/// The registry of all command definitions. Main thread only.
class CommandDefinitionMgr
{
public:
    static CommandDefinitionMgr* get();

    /// The definition with this key, or null. Of two with one key, the first.
    [[nodiscard]] CommandDefinition* findCommandDefinitionById(std::wstring_view id) const;

    /// All definitions in the order of their registration.
    const std::vector<CommandDefinition*>& commandDefinitions() const { return m_definitions; }
    /// Those that joined a group, in the same order.
    [[nodiscard]] std::vector<CommandDefinition*>
    commandDefinitionsOfGroup(const Vs::UniqueString* group) const;

    /// The keys closest to a mistyped one, best first; for messages.
    [[nodiscard]] std::vector<std::wstring> similarIds(std::wstring_view id, size_t maximum = 3) const;

    /// Throws std::logic_error, with every fault by name, if a definition was registered without a key or
    /// with one that was taken. Called once the add-ins are loaded: such a program must not start.
    void validate() const;

    /// Grows with every definition that is registered or unregistered: a looked-up definition may be cached
    /// while it stays the same.
    unsigned long generation() const { return m_generation; }

private:
    friend class CommandDefinition;
    CommandDefinitionMgr() = default;
    void add(CommandDefinition* definition);
    void remove(CommandDefinition* definition);

    struct Index;
    Index& index() const;

    std::vector<CommandDefinition*> m_definitions;
    unsigned long m_generation = 1;
};

} // namespace Vu
