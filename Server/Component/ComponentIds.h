#pragma once

#include "Server/Component/Component.h"

#include <algorithm>
#include <charconv>

namespace Vs {

/// The id of the component that holds the one of this id; the root's is empty.
[[nodiscard]] inline std::string parentId(const std::string& id)
{
    const size_t end = id.rfind('/');
    return end == std::string::npos ? std::string() : id.substr(0, end);
}

/// The last step of the id: where the component is in the model's data, wherever the assembly that holds it
/// occurs.
[[nodiscard]] inline std::string placeOf(const std::string& id)
{
    return id.substr(id.rfind('/') + 1);
}

/// The id of the component at that place in an assembly, or at the top of the tree.
[[nodiscard]] inline std::string idBelow(const Component& parent, const std::string& place)
{
    return parent.id.empty() ? place : parent.id + '/' + place;
}

/// Whether the component of this id is the other one, or is inside it.
[[nodiscard]] inline bool isWithin(const std::string& id, const std::string& other)
{
    return id.starts_with(other) && (other.empty() || id.size() == other.size() || id[other.size()] == '/');
}

/// The sort key of the children of one parent.
[[nodiscard]] inline int lastNumber(const std::string& id)
{
    int last = 0;
    std::from_chars(id.data() + id.rfind(':') + 1, id.data() + id.size(), last);
    return last;
}

/// The position of the child of this id among those of its parent, or where it would be: they are sorted by
/// the last numbers of their ids.
[[nodiscard]] inline size_t rowOf(const Component& parent, const std::string& id)
{
    const auto& children = parent.children;
    const auto found =
        std::partition_point(children.begin(), children.end(), [own = lastNumber(id)](const auto& child) {
            return lastNumber(child->id) < own;
        });
    return static_cast<size_t>(found - children.begin());
}

} // namespace Vs
