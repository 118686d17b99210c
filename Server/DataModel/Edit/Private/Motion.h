#pragma once

#include "Server/Geometry/GkMatrix3d.h"

namespace Vs {

/// Whether the matrix only translates and rotates: the kernel takes no others, as a scale or a mirror would
/// change the shape itself.
bool isMotion(const GkMatrix3d& matrix);

/// Whether it moves less far than the kernel's precision allows: a thousand kilometres.
bool isNear(const GkMatrix3d& matrix);

} // namespace Vs
