#include "Server/Body/BodyProperties.h"

#include "Server/Body/Body.h"

#include <cmath>

namespace Vs {

std::optional<BodyProperties> bodyProperties(const Body& body, Status& status)
{
    auto all = body.properties(BodyMeasure::Volume, status);
    const auto area = all ? body.properties(BodyMeasure::Area, status) : std::nullopt;
    if (!area)
        return std::nullopt;
    all->area = area->area;
    all->freeArea = area->freeArea;
    all->areaCentre = area->areaCentre;
    return all;
}

double scaleOf(const GkMatrix3d& placement)
{
    const double scale = std::cbrt(std::abs(placement.det()));
    // A place that was turned isn't quite rigid, and its lengths are still to be those of the body, digit by
    // digit.
    constexpr double kRigid = 1e-9;
    return std::abs(scale - 1) < kRigid ? 1 : scale;
}

BodyProperties placed(BodyProperties properties, const GkMatrix3d& placement)
{
    const double scale = scaleOf(placement), square = scale * scale;
    properties.volume *= square * scale;
    properties.area *= square;
    properties.freeArea *= square;
    properties.volumeCentre = placement * properties.volumeCentre;
    properties.areaCentre = placement * properties.areaCentre;
    return properties;
}

} // namespace Vs
