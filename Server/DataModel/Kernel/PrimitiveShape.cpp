#include "Server/DataModel/Kernel/PrimitiveShape.h"

#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <Precision.hxx>

#include <cmath>
#include <stdexcept>

namespace Vs::Kernel {

namespace {

/// The kernel's own cone has two radii that differ.
TopoDS_Shape cone(double base, double top, double height)
{
    if (std::abs(base - top) <= Precision::Confusion())
        return BRepPrimAPI_MakeCylinder(base, height).Shape();
    return BRepPrimAPI_MakeCone(base, top, height).Shape();
}

} // namespace

TopoDS_Shape primitiveShape(ModelKernel::Primitive kind, const double (&sizes)[3])
{
    switch (kind) {
    case ModelKernel::Primitive::Box:
        return BRepPrimAPI_MakeBox(sizes[0], sizes[1], sizes[2]).Shape();
    case ModelKernel::Primitive::Cylinder:
        return BRepPrimAPI_MakeCylinder(sizes[0], sizes[1]).Shape();
    case ModelKernel::Primitive::Sphere:
        return BRepPrimAPI_MakeSphere(sizes[0]).Shape();
    case ModelKernel::Primitive::Cone:
        return cone(sizes[0], sizes[1], sizes[2]);
    case ModelKernel::Primitive::Torus:
        return BRepPrimAPI_MakeTorus(sizes[0], sizes[1]).Shape();
    }
    throw std::runtime_error("unknown kind of primitive");
}

} // namespace Vs::Kernel
