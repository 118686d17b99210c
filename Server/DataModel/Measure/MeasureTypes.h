#pragma once

#include "Server/Geometry/GkPoint3d.h"

namespace Vs {

/// What can be measured. The numbers are stored in scripts and options.
enum class EMeasureType {
    Length = 1,
    Radius = 2,
    Area = 3,
    Volume = 4,
    LoopLength = 5,
    Distance = 6,
    Angle = 7,
    PositionX = 8,
    PositionY = 9,
    PositionZ = 10,
    DeltaX = 11,
    DeltaY = 12,
    DeltaZ = 13,
};

/// A measured value, in mm, mm², mm³ or radians, and the points that its dimension is drawn at, in the
/// asset's coordinates: the two ends of a distance; a point on the first leg, the apex and a point on the
/// second leg of an angle; otherwise the position of what was measured, three times.
struct MeasureResult
{
    double value = 0;
    GkPoint3d point1, point2, point3;
};

} // namespace Vs
