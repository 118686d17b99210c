#pragma once

#include "Server/DataModel/Kernel/Mesher.h"

#include <memory>

namespace Vs::Kernel {

/// A body's mesh of that refinement. The usual one is kept in the shape; each other is made of a copy, so
/// that it doesn't take the place of the one that is shown. Faces that are nothing but triangles stay as they
/// are. Throws Standard_Failure.
std::shared_ptr<const BodyMesh> meshBody(const TopoDS_Shape& shape, const ShapeColours& colours,
                                         const TranslatorRefinement& refinement,
                                         const Message_ProgressRange& progress = {},
                                         MeshThreads threads = MeshThreads::All);

} // namespace Vs::Kernel
