#pragma once

#include <GProp_GProps.hxx>
#include <TopoDS_Shape.hxx>

namespace Vs::Kernel {

/// The area of a shape's faces, with their centre, to a relative error of 1e-6. Each face has a surface.
/// Throws Standard_Failure.
GProp_GProps integratedArea(const TopoDS_Shape& shape);

/// The same for the enclosed volume, negative where the faces point inwards.
GProp_GProps integratedVolume(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
