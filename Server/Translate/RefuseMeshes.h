#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Throws if a face has triangles but no surface: the exact formats have no place for such, and the kernel
/// dies of it.
void refuseMeshes(Kernel::XdeModel& model);

} // namespace Vs::Translate
