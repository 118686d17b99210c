#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>

#include <optional>

namespace Vs::Kernel {

struct ShortestDistance
{
    double value;
    gp_Pnt first, second; ///< Where it is reached.
};

/// The shortest distance of two shapes, exact; zero where they touch or one lies within a solid of the other.
/// Where the shapes are meshed, only those of their faces are looked at closely that can be the nearest, so
/// that it doesn't matter how many others there are. Faces without a surface count as their triangles.
/// Nothing if the kernel finds none. Throws Standard_Failure.
std::optional<ShortestDistance> shortestDistance(const TopoDS_Shape& first, const TopoDS_Shape& second);

/// Whether that may take longer than a moment.
bool mayTakeLong(const TopoDS_Shape& first, const TopoDS_Shape& second);

} // namespace Vs::Kernel
