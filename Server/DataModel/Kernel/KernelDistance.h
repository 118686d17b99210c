#pragma once

#include "Server/DataModel/Kernel/ShortestDistance.h"

namespace Vs::Kernel {

/// The result of the kernel's own search, which compares all parts of both shapes. Nothing if it finds none.
/// Throws Standard_Failure.
std::optional<ShortestDistance> kernelDistance(const TopoDS_Shape& first, const TopoDS_Shape& second);

/// A lower bound of the distance of two faces from their unbounded surfaces: parallel planes and cylinders. 0
/// for all others.
double leastBySurfaces(const TopoDS_Shape& first, const TopoDS_Shape& second);

} // namespace Vs::Kernel
