#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

class Asset;

/// Components that were made together, like a pattern, and are deleted together: deleting one deletes all,
/// unless only that one was asked for. Groups are kept among the asset's settings, so that they are undone
/// and saved with the model. Components are identified by Component::id; one that is already gone is skipped.
class ComponentGroups
{
public:
    /// The asset must outlive the object, which is as short-lived as the call that needs it.
    explicit ComponentGroups(Asset& asset);

    /// Makes a group of components, as part of the open change. Fewer than two don't make a group.
    void add(const std::vector<std::string>& components);
    bool isGrouped(const std::string& component) const { return keyOf(component) != nullptr; }
    /// The existing members of the component's group, including itself; empty if it is in none.
    std::vector<std::string> groupOf(const std::string& component) const;
    /// Removes deleted components from their groups, as a part of the open change; a group with one member
    /// left is dissolved.
    void remove(const std::vector<std::string>& components);
    /// Forgets the component's group, as a part of the open change; false if it is in none.
    bool separate(const std::string& component);

private:
    /// Members with consecutive numbers, as in a pattern: a hundred thousand of them are stored in a few
    /// words.
    struct Run
    {
        std::string beginning; ///< Of the ids, up to the last number.
        int first, last;
    };
    using Runs = std::vector<Run>;

    const std::string* keyOf(const std::string& component) const;
    void keep(const std::string& key, const Runs& runs);
    void index(const std::string& key);

    Asset& m_asset;
    std::map<std::string, Runs> m_members; ///< By the group's key among the settings.

    struct Place
    {
        int last;
        const std::string* key;
    };
    /// By the beginnings of the members' places (placeOf), and the first numbers of runs.
    std::unordered_map<std::string, std::map<int, Place>> m_places;
};

} // namespace Vs
