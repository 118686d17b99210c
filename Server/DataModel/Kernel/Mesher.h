#pragma once

#include "Server/DataModel/Kernel/MeshContext.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/DataModel/Translator.h"

#include <Message_ProgressRange.hxx>

namespace Vs::Kernel {

/// Whether all processors share the work, or the calling thread does it alone.
enum class MeshThreads { All, Own };

/// Makes the triangles of a shape's faces and stores them in the shape. Faces that already have fine enough
/// ones are left alone. The deflection is a fraction of the shape's own diagonal, so that big and small parts
/// look alike and none explodes. Throws Standard_Failure.
void meshShape(const TopoDS_Shape& shape, const TranslatorRefinement& refinement,
               const Message_ProgressRange& progress = {}, MeshThreads threads = MeshThreads::All);

/// The same on the calling thread, which tells each face when its turn comes.
void meshWatched(const TopoDS_Shape& shape, const TranslatorRefinement& refinement, const FaceWatch& watch);

/// Extracts a meshed shape's triangles and edge lines.
BodyMesh extractMesh(const TopoDS_Shape& shape, const ShapeColours& colours);

/// Whether the shape has at least one face with triangles.
bool hasTriangles(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
