#pragma once

#include "Server/DataModel/Kernel/PartShape.h"

namespace Vs::Kernel {

/// A shape made by an operation of the kernel, and what the input shapes became in it.
struct MadeShape
{
    TopoDS_Shape shape;
    Successors successors;
};

} // namespace Vs::Kernel
