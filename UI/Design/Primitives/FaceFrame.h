#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>

namespace Vu::Design {

/// The coordinate frame of something standing on a face: z points away from the body (standingAt), in the
/// asset's coordinates. The origin is in the middle of a flat face, if the middle is on it; on a curved one
/// it is where it was picked, or else the point nearest to its middle. Nothing if the face is gone, or isn't
/// shown.
[[nodiscard]] std::optional<GkMatrix3d> frameOnFace(const Vs::LogicalSelection& face, const Vs::Asset& asset);

} // namespace Vu::Design
