#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

class Component;

/// Which components show which part of the model's data, and are at which of its places. Adding or removing
/// one costs the same however many there are. The index notes its position for a component in the component
/// itself (Component::Notes).
class PartIndex
{
public:
    using Components = std::vector<Component*>;

    /// Not for a component that is known already.
    void add(Component& component, const std::string& part);
    /// Adds all that is below a component, as the tree of a file has it; `part` is what the component itself
    /// shows. Returns false, having added some of them, if the tree doesn't tell what one of them shows, or
    /// has it elsewhere than the kernel would have put it.
    [[nodiscard]] bool addTree(const Component& parent, const std::string& part);
    /// Returns the part if nothing shows it any more, otherwise an empty text. Ignores an unknown component.
    std::string remove(Component& component);

    /// Empty for an unknown component.
    const std::string& partOf(const Component& component) const;
    /// In no particular order. The lists are valid until the next call of `add` or `remove`.
    const Components& ofPart(const std::string& part) const;
    /// For those in assemblies: at the top of the tree a component is the only one at its place, which is its
    /// id.
    const Components& atPlace(const std::string& place) const;

private:
    using Lists = std::unordered_map<std::string, Components>;

    Lists m_ofPart, m_atPlace;
};

} // namespace Vs
