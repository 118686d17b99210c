#pragma once

#include "Server/DataModel/Kernel/Mesher.h"

#include <memory>

namespace Vs::Kernel {

/// A body's mesh at that refinement. The default one is kept in the shape; every other is made from a copy,
/// so that it doesn't replace the one on display. Faces that consist only of triangles stay as they are.
/// Throws Standard_Failure.
std::shared_ptr<const BodyMesh> meshBody(const TopoDS_Shape& shape, const ShapeColours& colours,
                                         const TranslatorRefinement& refinement,
                                         const Message_ProgressRange& progress = {},
                                         MeshThreads threads = MeshThreads::All);

} // namespace Vs::Kernel
