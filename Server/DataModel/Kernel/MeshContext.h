#pragma once

#include <IMeshTools_Context.hxx>

namespace Vs::Kernel {

/// How faces are meshed, for one run of the kernel's mesher: planes by an algorithm that takes many holes
/// well, everything else as the kernel does by default. The kernel's default for planes takes time with the
/// square of the holes.
Handle(IMeshTools_Context) meshContext();

} // namespace Vs::Kernel
