#pragma once

#include "Server/DataModel/Model/ModelKernel.h"

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// A primitive at the origin, along Z; its sizes in mm, as ModelKernel::addPrimitive has them. Throws what
/// the kernel throws if there is no such shape.
TopoDS_Shape primitiveShape(ModelKernel::Primitive kind, const double (&sizes)[3]);

} // namespace Vs::Kernel
