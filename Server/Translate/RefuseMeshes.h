#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Throws if a face has triangles but no surface: the exact formats can't hold one, and the kernel crashes on
/// it.
void refuseMeshes(Kernel::XdeModel& model);

} // namespace Vs::Translate
