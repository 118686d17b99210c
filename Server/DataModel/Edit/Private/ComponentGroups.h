#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

class Asset;

/// Components that were made together, as a pattern is, and go together: who deletes one of them deletes them
/// all, unless asked for that one alone. Groups stand among the asset's settings, so that they are undone
/// with the model and saved with it. Components are named by Component::id; one that is gone otherwise is
/// passed over.
class ComponentGroups
{
public:
    /// The asset must outlive the object, which is as short-lived as the call that needs it.
    explicit ComponentGroups(Asset& asset);

    /// Makes a group of components, as a part of the open change. Fewer than two are none.
    void add(const std::vector<std::string>& components);
    bool isGrouped(const std::string& component) const { return keyOf(component) != nullptr; }
    /// The members of the component's group that are there, itself among them; empty if it is in none.
    std::vector<std::string> groupOf(const std::string& component) const;
    /// Takes components that were deleted out of their groups, as a part of the open change; a group of which
    /// one is left is none any more.
    void remove(const std::vector<std::string>& components);
    /// Forgets the component's group, as a part of the open change; false if it is in none.
    bool separate(const std::string& component);

private:
    const std::string* keyOf(const std::string& component) const;
    void keep(const std::string& key);
    void take(const std::string& key, std::vector<std::string> members);

    Asset& m_asset;
    std::map<std::string, std::vector<std::string>> m_members; ///< By the group's key among the settings.
    std::unordered_map<std::string, std::string> m_keys;       ///< By a member's place (placeOf).
};

} // namespace Vs
