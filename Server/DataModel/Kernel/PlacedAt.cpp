#include "Server/DataModel/Kernel/PlacedAt.h"

#include "Server/DataModel/Kernel/ShapeForm.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <BRepBuilderAPI_Transform.hxx>

#include <cmath>

namespace Vs::Kernel {

TopoDS_Shape PlacedAt::operator()(const TopoDS_Shape& shape, const GkMatrix3d& placement)
{
    if (!m_placement || !m_placement->isEqualTo(placement, {0, 0})) {
        m_location = TopLoc_Location(toMotion(placement));
        m_placement = placement;
    }
    // The kernel's searches take the ranges of curves and surfaces as they are, whatever the scale of a
    // location. Angles don't depend on it, but on what the shapes share.
    constexpr double kRigid = 1e-9;
    const gp_Trsf& motion = m_location.Transformation();
    const bool resized = std::abs(std::abs(motion.ScaleFactor()) - 1) > kRigid;
    if (resized && m_type != EMeasureType::Angle && fault(shape) == NoAnswer::None)
        return BRepBuilderAPI_Transform(shape, motion, true).Shape();
    return shape.Moved(m_location, false);
}

} // namespace Vs::Kernel
