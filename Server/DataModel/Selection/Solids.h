#pragma once

#include <cstdint>
#include <optional>
#include <vector>

// The solids of a component's body (ObjectPath::Leaf::Solid), which only the exact shape knows: the first
// query loads the kernel. Main thread.
namespace Vs {

class Component;

/// 0 for an assembly, and for a body made only of surfaces or triangles.
[[nodiscard]] uint32_t solidCount(const Component& component);

/// The solid that a face belongs to; nothing if it belongs to none, or if there is only one, which is the
/// body.
[[nodiscard]] std::optional<uint32_t> solidOfFace(const Component& component, uint32_t face);

/// The faces of a solid, in their order; none if there is no such solid.
[[nodiscard]] std::vector<uint32_t> facesOfSolid(const Component& component, uint32_t solid);

} // namespace Vs
