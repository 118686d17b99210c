#pragma once

#include "Server/Geometry/GkMatrix3d.h"

#include <string>
#include <variant>
#include <vector>

namespace Vs {

// The changes of an exact model that ModelKernel::edit makes. Components are named by Component::id. A
// component that stands in an assembly which occurs several times is changed in all of these.

/// Moves components. What is inside another one of them moves with that alone.
struct MoveEdit
{
    std::vector<std::string> components;
    GkMatrix3d motion; ///< In the asset's coordinates, without scale or mirror.
};

/// Puts more occurrences beside components: of each one for every motion. A copy shows the same body, so
/// that a change of the body is seen in both; of an assembly at the top of the tree, the parts do.
struct CopyEdit
{
    std::vector<std::string> components;
    std::vector<GkMatrix3d> motions; ///< From the component to each copy; otherwise as MoveEdit's.
};

using ModelEdit = std::variant<MoveEdit, CopyEdit>;

} // namespace Vs
