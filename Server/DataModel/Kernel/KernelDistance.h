#pragma once

#include "Server/DataModel/Kernel/ShortestDistance.h"

namespace Vs::Kernel {

/// What the kernel's own search finds, which compares all parts of both shapes. Nothing if it finds none.
/// Throws Standard_Failure.
std::optional<ShortestDistance> kernelDistance(const TopoDS_Shape& first, const TopoDS_Shape& second);

/// What two faces are apart at least, as far as their surfaces without ends tell: planes and cylinders that
/// are parallel. 0 for all others.
double leastBySurfaces(const TopoDS_Shape& first, const TopoDS_Shape& second);

} // namespace Vs::Kernel
