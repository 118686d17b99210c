#pragma once

#include "Server/DataModel/Model/ShapeMeasure.h"

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

class SubShapes;

/// Measures one face, edge or vertex: length, radius, area, loop length; asking for any one of the positions
/// gives the whole position. Exact where the kernel has a closed form, otherwise to a relative error of 1e-6.
/// Throws Standard_Failure.
ShapeAnswer measurePart(const SubShapes& shapes, const TopoDS_Shape& part, EMeasureType type);

/// The shortest distance between two shapes, with its ends. Zero where they touch or one is inside the other.
ShapeAnswer measureDistance(const TopoDS_Shape& first, const TopoDS_Shape& second);

} // namespace Vs::Kernel
