#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>

#include <optional>

namespace Vs::Kernel {

struct ShortestDistance
{
    double value;
    gp_Pnt first, second; ///< Where it is attained.
};

/// The shortest distance between two shapes, exact; zero where they touch or one lies inside a solid of the
/// other. Where the shapes are meshed, only the faces that can be nearest are examined exactly, so that the
/// number of the others doesn't matter. Faces without a surface count as their triangles. Nothing if the
/// kernel finds none. Throws Standard_Failure.
std::optional<ShortestDistance> shortestDistance(const TopoDS_Shape& first, const TopoDS_Shape& second);

/// Whether that may take more than a moment.
bool mayTakeLong(const TopoDS_Shape& first, const TopoDS_Shape& second);

} // namespace Vs::Kernel
