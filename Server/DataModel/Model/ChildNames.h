#pragma once

#include "Server/Component/Component.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vs {

/// Which children of a component have a name, so that nobody has to search all of them. Whoever changes the
/// children or their names reports it here.
class ChildNames
{
public:
    explicit ChildNames(const Component& parent);

    /// Those with this name, in the order of the children.
    std::span<const Component* const> named(std::wstring_view name) const;
    /// How many of the same name come before the child.
    size_t place(const Component& child) const;
    /// `beginning` followed by the lowest number from 1 that makes a name no child has.
    std::wstring free(const std::wstring& beginning);

    void add(const Component& child);
    /// Before its name changes or it is removed.
    void remove(const Component& child);

private:
    struct Hash : std::hash<std::wstring_view>
    {
        using is_transparent = void;
    };

    std::unordered_map<std::wstring, std::vector<const Component*>, Hash, std::equal_to<>> m_children;
    /// No number below these is free, for the beginnings that were asked about.
    std::unordered_map<std::wstring, unsigned, Hash, std::equal_to<>> m_taken;
};

} // namespace Vs
