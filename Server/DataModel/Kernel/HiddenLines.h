#pragma once

#include "Server/DataModel/Measure/LineDrawing.h"
#include "Server/Geometry/GkVector3d.h"

#include <TopoDS_Shape.hxx>

#include <vector>

namespace Vs::Kernel {

/// The lines of shapes as seen along a direction in a parallel projection, as short straight pieces that
/// leave the curves by no more than a two-thousandth of the whole.
LineDrawing hiddenLines(const std::vector<TopoDS_Shape>& shapes, const GkVector3d& direction,
                        const GkVector3d& up, bool hidden);

} // namespace Vs::Kernel
