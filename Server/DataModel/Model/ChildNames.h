#pragma once

#include "Server/Component/Component.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vs {

/// Which children of a component have a name, so that nobody has to ask all of them. Whoever changes the
/// children or their names tells it.
class ChildNames
{
public:
    explicit ChildNames(const Component& parent);

    /// Those of this name, in the order of the children.
    std::span<const Component* const> named(std::wstring_view name) const;
    /// How many of its name stand before the child.
    size_t place(const Component& child) const;
    /// The beginning with the lowest number from 1 behind it that no child has as its name.
    std::wstring free(const std::wstring& beginning);

    void add(const Component& child);
    /// Before its name changes or it goes.
    void remove(const Component& child);

private:
    struct Hash : std::hash<std::wstring_view>
    {
        using is_transparent = void;
    };

    std::unordered_map<std::wstring, std::vector<const Component*>, Hash, std::equal_to<>> m_children;
    /// Below these numbers none is free, for the beginnings that were asked about.
    std::unordered_map<std::wstring, unsigned, Hash, std::equal_to<>> m_taken;
};

} // namespace Vs
