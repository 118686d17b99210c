#pragma once

#include "Server/Body/BodyProperties.h"

#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// The properties of a shape that belong to `what`, at a relative error of 1e-6.
BodyProperties measureShape(const TopoDS_Shape& shape, BodyMeasure what);

} // namespace Vs::Kernel
