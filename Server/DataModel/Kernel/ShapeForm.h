#pragma once

#include "Server/DataModel/Model/ShapeMeasure.h"

#include <TopoDS_Shape.hxx>
#include <gp_Lin.hxx>
#include <gp_Pln.hxx>

#include <optional>

namespace Vs::Kernel {

/// What kind a vertex, an edge, a face or anything larger is.
ShapeKind kindOf(const TopoDS_Shape& shape);

/// Whether the kernel can measure the shape at all; it crashes or throws on some. Otherwise returns the
/// reason.
NoAnswer fault(const TopoDS_Shape& shape);
/// The same for a part of a body: triangles can be measured as faces, edges and vertices.
NoAnswer faultOfPart(const TopoDS_Shape& part);

/// The line that an edge lies on, or the axis of a cylinder or cone; nothing for other shapes.
std::optional<gp_Lin> lineOf(const TopoDS_Shape& shape);
/// The plane of a flat face, its normal pointing outwards, or of a circle; nothing for other shapes.
std::optional<gp_Pln> planeOf(const TopoDS_Shape& shape);

inline GkPoint3d toPoint(const gp_Pnt& point)
{
    return {point.X(), point.Y(), point.Z()};
}

} // namespace Vs::Kernel
