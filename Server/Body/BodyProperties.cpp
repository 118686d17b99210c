#include "Server/Body/BodyProperties.h"

#include "Server/Body/Body.h"

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

} // namespace Vs
