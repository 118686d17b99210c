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

Spread inertiaOf(const Spread& s)
{
    return {s.yy + s.zz, s.xx + s.zz, s.xx + s.yy, -s.xy, -s.xz, -s.yz};
}

namespace {

/// The spread after a linear map, whose volume is `volumes` times as large.
Spread mapped(const Spread& s, const GkMatrix3d& map, double volumes)
{
    const double of[3][3] = {{s.xx, s.xy, s.xz}, {s.xy, s.yy, s.yz}, {s.xz, s.yz, s.zz}};
    const auto product = [&](int i, int k) {
        double sum = 0;
        for (int a = 0; a < 3; ++a)
            for (int b = 0; b < 3; ++b)
                sum += map.entry[i][a] * of[a][b] * map.entry[k][b];
        return sum * volumes;
    };
    return {product(0, 0), product(1, 1), product(2, 2), product(0, 1), product(0, 2), product(1, 2)};
}

} // namespace

BodyProperties placed(BodyProperties properties, const GkMatrix3d& placement)
{
    const double scale = scaleOf(placement), square = scale * scale;
    properties.volume *= square * scale;
    properties.area *= square;
    properties.freeArea *= square;
    properties.spread = mapped(properties.spread, placement, square * scale);
    properties.volumeCentre = placement * properties.volumeCentre;
    properties.areaCentre = placement * properties.areaCentre;
    return properties;
}

} // namespace Vs
