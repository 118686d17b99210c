#pragma once

#include "Server/Body/Private/MeshSides.h"

#include <cstdint>
#include <vector>

namespace Vs {

/// What of a surface of triangles a person takes for one face: a flat part of it, or a bent part between
/// sharp edges and flat parts. They are counted by their first triangles.
struct MeshRegions
{
    explicit MeshRegions(const MeshSides& sides);

    std::vector<uint32_t> ofTriangle;
    uint32_t count = 0;
};

} // namespace Vs
