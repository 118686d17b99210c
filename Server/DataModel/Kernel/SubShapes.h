#pragma once

#include <TopTools_ListOfShape.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>

#include <vector>

namespace Vs::Kernel {

/// An edge that a person can see, and the faces that it bounds.
struct VisibleEdge
{
    TopoDS_Edge edge;
    TopTools_ListOfShape faces;
};

/// The edges of a shape in the order in which they are counted everywhere. A seam, where a face meets
/// itself, and an edge that is but a point are none that anybody would see.
std::vector<VisibleEdge> visibleEdges(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
