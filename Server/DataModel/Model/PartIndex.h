#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

class Component;

/// Which components show which part of the model's data, and stand at which place of them. One that comes or
/// goes costs the same however many there are. The index notes in a component where it has it
/// (Component::Notes).
class PartIndex
{
public:
    using Components = std::vector<Component*>;

    /// Not of a component that is known already.
    void add(Component& component, const std::string& part);
    /// Returns the part if nothing shows it any more, else an empty text. Does nothing to an unknown
    /// component.
    std::string remove(Component& component);

    /// Empty for an unknown component.
    const std::string& partOf(const Component& component) const;
    /// In no order. The lists are good until the next call of `add` or `remove`.
    const Components& ofPart(const std::string& part) const;
    /// Of those in assemblies: at the top of the tree a component is the only one at its place, which is its
    /// id.
    const Components& atPlace(const std::string& place) const;

private:
    using Lists = std::unordered_map<std::string, Components>;

    Lists m_ofPart, m_atPlace;
};

} // namespace Vs
