#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Dir.hxx>

namespace Vs::Kernel {

/// How far a face, an edge or a vertex reaches along a direction, from the origin: never less than it does,
/// and exact where what is furthest is a vertex, or an edge that is straight or round. Infinite where that
/// can't be told without a search.
double reachAlong(const TopoDS_Shape& shape, const gp_Dir& direction);

} // namespace Vs::Kernel
