#pragma once

#include <BRepAdaptor_Curve.hxx>
#include <TopoDS_Face.hxx>
#include <gp_Ax1.hxx>
#include <gp_Circ.hxx>

#include <optional>

namespace Vs::Kernel {

/// A round surface. A face counts as one if its surface is one of the kernel's own, or one whose points lie
/// on such to a millionth of their extent: writers of exchange files like to make splines of everything.
struct RoundForm
{
    enum class Kind { Cylinder, Cone, Sphere, Torus };
    Kind kind;
    gp_Ax1 axis; ///< From the centre of a sphere or torus; of a sphere, in any direction.
    double radius =
        0; ///< Of a torus the tube's, which a fillet along a round edge has for its radius; not of a cone.
};

/// Nothing for other faces.
std::optional<RoundForm> roundFormOf(const TopoDS_Face& face);

/// The circle that a curve lies on, by the same measure; nothing for other curves.
std::optional<gp_Circ> circleOf(const BRepAdaptor_Curve& curve);

} // namespace Vs::Kernel
