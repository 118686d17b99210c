#pragma once

#include "Server/DataModel/Kernel/Mesher.h"

#include <functional>
#include <memory>

namespace Vs::Kernel {

/// A body's mesh at that refinement. The default one is kept in the shape; every other is made from a copy,
/// so that it doesn't replace the one on display. Faces that consist only of triangles stay as they are.
/// Throws Standard_Failure.
std::shared_ptr<const BodyMesh> meshBody(const TopoDS_Shape& shape, const ShapeColours& colours,
                                         const TranslatorRefinement& refinement,
                                         const Message_ProgressRange& progress = {},
                                         MeshThreads threads = MeshThreads::All);

/// A body apart from its model.
struct LooseBody
{
    TopoDS_Shape shape;
    ShapeColours colours;
};
/// A copy without triangles, but those of faces that are nothing else, which shares with the body only what
/// never changes.
LooseBody looseBody(const TopoDS_Shape& shape, const ShapeColours& colours);

using MakeMesh =
    std::function<std::shared_ptr<const BodyMesh>(const Message_ProgressRange&, MeshThreads threads)>;
/// Runs what makes a mesh; `goOn` as in ModelKernel::mesh. Any thread.
using MeshRunner = std::shared_ptr<const BodyMesh>(const MakeMesh& make,
                                                   const std::function<bool(double)>& goOn);

} // namespace Vs::Kernel
