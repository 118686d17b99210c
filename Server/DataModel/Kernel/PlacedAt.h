#pragma once

#include "Server/DataModel/Measure/MeasureTypes.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <TopLoc_Location.hxx>
#include <TopoDS_Shape.hxx>

#include <optional>

namespace Vs::Kernel {

/// Puts shapes where they occur, so that they can be measured together. Some files contain placements that
/// aren't rigid; measuring takes them as they are.
class PlacedAt
{
public:
    explicit PlacedAt(EMeasureType type) : m_type(type) {}

    TopoDS_Shape operator()(const TopoDS_Shape& shape, const GkMatrix3d& placement);

private:
    EMeasureType m_type;
    std::optional<GkMatrix3d> m_placement;
    // A newly made shape is distinct from an earlier one, even at the same place, and parts that meet would
    // have nothing in common; so the earlier one is kept.
    TopLoc_Location m_location;
};

} // namespace Vs::Kernel
