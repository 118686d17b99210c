#pragma once

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// The volume of the solids, to about a thousandth, in mm³.
double roughVolume(const TopoDS_Shape& shape);

/// All solids of a shape as one: the solid itself, or a compound of several. Null if there is none.
TopoDS_Shape solidsOf(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
