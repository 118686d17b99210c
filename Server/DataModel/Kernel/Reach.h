#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Dir.hxx>

namespace Vs::Kernel {

/// How far a face, an edge or a vertex extends along a direction, from the origin: never too little, and
/// exact where the furthest point is a vertex, or on an edge that is straight or round. Infinite where it
/// can't be determined without a search.
double reachAlong(const TopoDS_Shape& shape, const gp_Dir& direction);

} // namespace Vs::Kernel
