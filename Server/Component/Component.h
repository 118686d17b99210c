#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/Body/BodyMesh.h"
#include "Server/Component/SharedName.h"
#include "Server/Geometry/GkPlacement.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs {

class Body;

/// A node of an asset's component tree: an assembly with children, or a part that shows a body. A body that
/// occurs many times is one Body under many components.
class Component
{
public:
    /// Names this component within its asset for as long as it exists, through undo, redo and saving: its
    /// parent's id, a slash and its own name.
    std::string id;
    SharedName name;
    GkPlacement placement;        ///< In the parent's coordinates.
    StrongRef<Body> body;         ///< Null for a pure assembly.
    std::optional<Colour> colour; ///< Of this occurrence; overrides the body's and is inherited by children.
    bool visible = true;
    std::vector<std::unique_ptr<Component>> children;

    /// What a component tree stores in each of its components, so that it needs no table of them; for nobody
    /// else.
    struct Notes
    {
        const std::string* part = nullptr; ///< The key in PartIndex; null while it isn't there.
        uint32_t rowOfPart = 0, rowAtPlace = 0;
        uint32_t visit = 0; ///< The last refresh that processed it.
    };
    Notes notes;
};

} // namespace Vs
