#pragma once

#include "Server/Geometry/GkPoint3d.h"

#include <cstddef>
#include <vector>

namespace Vs {

/// One point of a list that holds x, y and z of each, as those of BodyMesh do.
inline GkPoint3d pointAt(const std::vector<float>& points, size_t index)
{
    return {points[3 * index], points[3 * index + 1], points[3 * index + 2]};
}

} // namespace Vs
