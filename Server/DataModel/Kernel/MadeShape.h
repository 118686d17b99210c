#pragma once

#include "Server/DataModel/Kernel/PartShape.h"

namespace Vs::Kernel {

/// A shape that an operation of the kernel made, and what became in it of the shapes that went in.
struct MadeShape
{
    TopoDS_Shape shape;
    Successors successors;
};

} // namespace Vs::Kernel
