#pragma once

#include "Server/DataModel/Model/ChildNames.h"
#include "Server/DataModel/Model/PartTree.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

/// Children that come to parents and go from them: thousands among as many others are put in, or taken out,
/// in one go.
class ChildChanges
{
public:
    /// The child is in its parent with `settle`.
    Component& come(Component& parent, std::unique_ptr<Component> child);
    /// Of one that the tree has forgotten: PartIndex doesn't know it any more, but it lives until `settle`.
    void go(Component& parent, const Component& child);

    /// Takes out what goes, and puts in what comes. Keeps the names of the parents up to date, or drops
    /// those where that is as much work as to make them anew.
    void settle(std::unordered_map<const Component*, ChildNames>& names);

private:
    using Children = std::vector<std::unique_ptr<Component>>;

    std::unordered_map<Component*, Children> m_coming;
    std::unordered_map<Component*, std::vector<const Component*>> m_going;
};

/// By the order in which places stand in the model's data, those of one assembly together.
void sortByPlace(std::vector<TouchedPlace>& places);

/// Leaves out what lies in a branch that is named itself (Component::id).
void keepTopmost(std::vector<std::string>& ids);

} // namespace Vs
