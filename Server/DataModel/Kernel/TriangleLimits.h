#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/Translator.h"

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// Splits triangles at the middle of their sides until none is longer than the refinement's largest edge,
/// which the kernel's mesher has no parameter for. The surface stays exactly the same and a closed mesh stays
/// closed. Does nothing, at no cost, unless the refinement asks for less than is usual. Stops short of the
/// limit rather than go on with a mesh of more than two million triangles. Drops the mesh's edge lines where
/// it splits anything.
void limitTriangles(BodyMesh& mesh, const TranslatorRefinement& refinement);

/// The same for the triangles that a shape's faces hold.
void limitTriangles(const TopoDS_Shape& shape, const TranslatorRefinement& refinement);

} // namespace Vs::Kernel
