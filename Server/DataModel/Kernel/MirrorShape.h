#pragma once

#include "Server/DataModel/Kernel/MadeShape.h"

#include <gp_Trsf.hxx>

#include <string>

namespace Vs::Kernel {

/// The image under a mirroring motion of a shape whose faces are either exact or made of triangles. `name` is
/// that of the part. Throws EditError. Main thread.
MadeShape mirrored(const TopoDS_Shape& shape, const gp_Trsf& mirror, const std::wstring& name);

} // namespace Vs::Kernel
