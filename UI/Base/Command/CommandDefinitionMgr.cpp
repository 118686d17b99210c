#include "UI/Base/Command/CommandDefinitionMgr.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandDefinition.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

namespace Vu {

namespace {

} // namespace

/// The keys are views of the definitions' own records, which outlive their definitions. The faults are what
/// `validate` complains of.
struct CommandDefinitionMgr::Index
{
    std::unordered_map<std::wstring_view, CommandDefinition*> byId;
    std::vector<std::pair<const CommandDefinition*, std::string>> faults;
};

CommandDefinitionMgr* CommandDefinitionMgr::get()
{
    // Never destroyed: definitions unregister while the process is shutting down.
    static CommandDefinitionMgr* const manager = new CommandDefinitionMgr;
    return manager;
}

CommandDefinitionMgr::Index& CommandDefinitionMgr::index() const
{
    static Index* const index = new Index;
    return *index;
}

CommandDefinition* CommandDefinitionMgr::findCommandDefinitionById(std::wstring_view id) const
{
    const auto found = index().byId.find(id);
    return found == index().byId.end() ? nullptr : found->second;
}

std::vector<CommandDefinition*>
CommandDefinitionMgr::commandDefinitionsOfGroup(const Vs::UniqueString* group) const
{
    std::vector<CommandDefinition*> members;
    for (CommandDefinition* definition : m_definitions) {
        const auto& groups = definition->commandGroups();
        if (std::find(groups.begin(), groups.end(), group) != groups.end())
            members.push_back(definition);
    }
    return members;
}

std::vector<std::wstring> CommandDefinitionMgr::similarIds(std::wstring_view id, size_t maximum) const
{
    constexpr size_t kLongestId =
        80; // Nobody mistypes more than this, and a megabyte of text must not be compared.
    std::vector<std::pair<size_t, std::wstring_view>> ranked;
    for (const auto& [key, definition] : index().byId) {
        if (id.empty() || id.size() > kLongestId)
            break;
        size_t away = Vs::Strings::editDistance(id, key);
        // "Fit" lacks only the word of "FitCommand" that everybody leaves out.
        constexpr std::wstring_view kEnding = L"Command";
        if (key.ends_with(kEnding))
            away =
                std::min(away, Vs::Strings::editDistance(id, key.substr(0, key.size() - kEnding.size())) + 1);
        if (away <= std::max<size_t>(2, id.size() / 3))
            ranked.emplace_back(away, key);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::wstring> ids;
    for (size_t i = 0; i < ranked.size() && i < maximum; ++i)
        ids.emplace_back(ranked[i].second);
    return ids;
}

void CommandDefinitionMgr::validate() const
{
    Vs::assertMainThread();
    // The class of a definition can be asked for only now that it is whole.
    std::string message;
    for (const auto& [definition, fault] : index().faults)
        message += (message.empty() ? "" : "\n") + fault + " (" + definition->getInterfaceId()->text() + ").";
    if (!message.empty())
        throw std::logic_error(message);
}

void CommandDefinitionMgr::add(CommandDefinition* definition)
{
    Vs::assertMainThread();
    ++m_generation;
    m_definitions.push_back(definition);
    if (definition->id().empty())
        index().faults.emplace_back(definition, "A command definition has no key");
    else if (!index().byId.emplace(definition->id(), definition).second)
        index().faults.emplace_back(definition, "Two command definitions have the key \"" +
                                                    Vs::Strings::narrow(definition->id()) + "\"");
}

void CommandDefinitionMgr::remove(CommandDefinition* definition)
{
    Vs::assertMainThread();
    ++m_generation;
    std::erase(m_definitions, definition);
    std::erase_if(index().faults, [&](const auto& fault) { return fault.first == definition; });
    std::erase_if(index().byId, [&](const auto& entry) { return entry.second == definition; });
}

} // namespace Vu
