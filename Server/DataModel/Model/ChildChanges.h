#pragma once

#include "Server/DataModel/Model/ChildNames.h"
#include "Server/DataModel/Model/PartTree.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

/// Children that are added to parents and removed from them: thousands among as many others are inserted, or
/// removed, in one pass.
class ChildChanges
{
public:
    /// The child is in its parent after `settle`.
    Component& come(Component& parent, std::unique_ptr<Component> child);
    /// For one that the tree has forgotten: PartIndex no longer knows it, but it lives until `settle`.
    void go(Component& parent, const Component& child);

    /// Removes and inserts the children. Keeps the names of the parents up to date, or drops those that would
    /// be as much work as making them again.
    void settle(std::unordered_map<const Component*, ChildNames>& names);

private:
    using Children = std::vector<std::unique_ptr<Component>>;

    std::unordered_map<Component*, Children> m_coming;
    std::unordered_map<Component*, std::vector<const Component*>> m_going;
};

/// In the order of the places in the model's data, those of one assembly together.
void sortByPlace(std::vector<TouchedPlace>& places);

/// Leaves out what lies in a branch that is itself named (Component::id).
void keepTopmost(std::vector<std::string>& ids);

} // namespace Vs
