#pragma once

#include <IMeshTools_Context.hxx>

namespace Vs::Kernel {

/// How faces are meshed, for one run of the kernel's mesher: planes by an algorithm that copes with many
/// holes, everything else as the kernel does by default. For planes, the time of the kernel's default grows
/// with the square of the number of holes.
Handle(IMeshTools_Context) meshContext();

} // namespace Vs::Kernel
