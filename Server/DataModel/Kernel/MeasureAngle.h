#pragma once

#include "Server/DataModel/Model/ShapeMeasure.h"

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// The angle between two shapes that have a direction: a straight edge, the axis of a cylinder or a cone, a
/// flat face, the plane of a circle. Edges that share an end are measured as they leave it, and faces that
/// share an edge inside the body, both up to 180 degrees; all others up to 90 degrees, and none if they are
/// parallel. `middle1` and `middle2` are the positions of the shapes.
ShapeAnswer measureAngle(const TopoDS_Shape& first, const TopoDS_Shape& second, const GkPoint3d& middle1,
                         const GkPoint3d& middle2);

} // namespace Vs::Kernel
