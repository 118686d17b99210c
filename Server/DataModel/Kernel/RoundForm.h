#pragma once

#include <BRepAdaptor_Curve.hxx>
#include <TopoDS_Face.hxx>
#include <gp_Ax1.hxx>
#include <gp_Circ.hxx>

#include <optional>

namespace Vs::Kernel {

/// A round surface. A face counts as one if its surface is one of the kernel's own, or if the points of its
/// surface lie on one to a millionth of their extent: writers of exchange files tend to turn everything into
/// splines.
struct RoundForm
{
    enum class Kind { Cylinder, Cone, Sphere, Torus };
    Kind kind;
    gp_Ax1 axis;       ///< From the centre of a sphere or torus; any direction for a sphere.
    double radius = 0; ///< For a torus that of the tube, as a fillet along a round edge has; not for a cone.
};

/// Nothing for other faces.
std::optional<RoundForm> roundFormOf(const TopoDS_Face& face);

/// The circle that a curve lies on, to the same tolerance; nothing for other curves.
std::optional<gp_Circ> circleOf(const BRepAdaptor_Curve& curve);

} // namespace Vs::Kernel
