#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>

namespace Vu::Design {

/// Where something stands on a face: z points away from the body (standingAt), in the asset's coordinates.
/// The origin is in the middle of a flat face, where the middle is on it; on a bent one it is where that was
/// picked, or else the place that is nearest to its middle. Nothing if the face is gone, or isn't shown.
[[nodiscard]] std::optional<GkMatrix3d> frameOnFace(const Vs::LogicalSelection& face, const Vs::Asset& asset);

} // namespace Vu::Design
