#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/Translator.h"

namespace Vs::Kernel {

/// Enforces the limits of a refinement that the kernel's mesher has no parameters for: bisects sides until
/// none is longer than the maximum edge length, and no triangle exceeds the maximum aspect ratio. For the
/// latter it also swaps the diagonals of planar quadrilaterals. The surface stays the same and a closed mesh
/// stays closed. Does nothing, at no cost, unless the refinement asks for more than the default. Stops short
/// of the limits rather than make more than two million triangles, sides shorter than half a thousandth of
/// the part's diagonal, or splits that wouldn't help. Drops the mesh's edge lines where it splits anything.
void limitTriangles(BodyMesh& mesh, const TranslatorRefinement& refinement);

} // namespace Vs::Kernel
