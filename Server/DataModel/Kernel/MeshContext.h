#pragma once

#include <IMeshTools_Context.hxx>
#include <TopoDS_Face.hxx>

#include <functional>

namespace Vs::Kernel {

/// Called with each face before its triangles are made, on the thread that makes them.
using FaceWatch = std::function<void(const TopoDS_Face&)>;

/// How faces are meshed, for one run of the kernel's mesher: planes by an algorithm that copes with many
/// holes, everything else as the kernel does by default. For planes, the time of the kernel's default grows
/// with the square of the number of holes.
Handle(IMeshTools_Context) meshContext(FaceWatch watch = {});

} // namespace Vs::Kernel
