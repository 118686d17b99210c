#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/Translator.h"

namespace Vs::Kernel {

/// Keeps the limits of a refinement that the kernel's mesher has no parameters for: splits sides in the
/// middle until none is longer than the largest edge, and no triangle thinner than the largest ratio. Also
/// exchanges the diagonals of plane quadrangles for the latter. The surface stays the same and a closed mesh
/// stays closed. Does nothing, at no cost, unless the refinement asks for less than is usual. Stops short of
/// the limits rather than make more than two million triangles, sides below half a thousandth of the part's
/// diagonal, or splits that wouldn't help. Drops the mesh's edge lines where it splits anything.
void limitTriangles(BodyMesh& mesh, const TranslatorRefinement& refinement);

} // namespace Vs::Kernel
