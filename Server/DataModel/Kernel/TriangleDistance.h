#pragma once

#include <gp_XYZ.hxx>

#include <array>

namespace Vs::Kernel {

using Triangle = std::array<gp_XYZ, 3>;

struct TriangleDistance
{
    double value;
    gp_XYZ first, second; ///< Where it is attained.
};

/// The shortest distance between two triangles, which may be degenerate (a line or a point); zero where they
/// meet.
TriangleDistance distanceOf(const Triangle& first, const Triangle& second);

} // namespace Vs::Kernel
