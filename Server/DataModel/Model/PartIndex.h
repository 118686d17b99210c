#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {

class Component;

/// Which components show which part of the model's data, and stand at which place of them. One that comes or
/// goes costs the same however many there are.
class PartIndex
{
public:
    using Components = std::vector<Component*>;

    /// Not of a component that is known already.
    void add(Component& component, const std::string& part);
    /// Returns the part if nothing shows it any more, else an empty text. Does nothing to an unknown
    /// component.
    std::string remove(const Component& component);

    /// Empty for an unknown component.
    const std::string& partOf(const Component& component) const;
    /// In no order. The lists are good until the next call of `add` or `remove`.
    const Components& ofPart(const std::string& part) const;
    const Components& atPlace(const std::string& place) const;

private:
    using Lists = std::unordered_map<std::string, Components>;

    struct Known
    {
        std::string part;
        size_t rowOfPart = 0, rowAtPlace = 0; ///< In the lists.
    };

    bool removeFrom(Lists& lists, const std::string& key, const Component& component, size_t row,
                    size_t Known::*rowOf);

    std::unordered_map<const Component*, Known> m_known;
    Lists m_ofPart, m_atPlace;
};

} // namespace Vs
