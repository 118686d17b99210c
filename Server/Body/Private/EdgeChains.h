#pragma once

#include "Server/Body/Private/MeshRegions.h"

#include <cstdint>
#include <vector>

namespace Vs {

/// The lines in which regions of a surface meet, or it bends sharply or ends, and the corners between them.
/// A line goes on as long as it lies between the same two regions without a corner. Both are counted as they
/// are met on the way through the triangles.
struct EdgeChains
{
    EdgeChains(const MeshSides& sides, const MeshRegions& regions);

    std::vector<std::vector<uint32_t>> lines; ///< Their nodes; one that is closed ends where it begins.
    std::vector<uint32_t> corners;            ///< Nodes.
};

} // namespace Vs
