#pragma once

#include "Server/DataModel/Model/ModelKernel.h"

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// The simple solid that a shape is, however its faces are divided; nothing if it isn't one.
std::optional<ModelKernel::Recognised> recognise(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
