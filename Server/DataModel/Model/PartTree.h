#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs {

/// A component tree as the model's data hold it, before it becomes Component objects.
struct PartTree
{
    struct Body
    {
        std::string entry; ///< Where the shape is in the model's data.
        std::wstring name;
        Colour colour;
        uint64_t revision = 0; ///< Changes with the shape; 0 if the kernel hasn't looked yet.
        /// Keeps the shape alive, so that no later one gets its revision; null if the kernel hasn't looked
        /// yet.
        std::shared_ptr<const void> shape;
    };
    struct Node
    {
        std::string id; ///< Component::id.
        std::wstring name;
        GkMatrix3d placement;
        std::optional<Colour> colour;
        int32_t body = -1; ///< Index into `bodies`, or -1 for an assembly.
        bool visible = true;
        std::vector<Node> children;
        std::string part; ///< Where the part or assembly is that it shows; empty in a file.
    };

    std::vector<Node> roots;
    std::vector<Body> bodies;
};

/// A place in a model that a change touched: the last step of a Component::id, or PartTree::Node::part.
struct TouchedPlace
{
    std::string entry;
    bool content; ///< What is there may look different; otherwise only its existence may have changed.
};

} // namespace Vs
