#include "UI/Commands/Measure/MeasureHint.h"

#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Measure/MeasureHuds.h"

namespace Vu::Commands {

namespace {

std::wstring hintWord(Vs::EMeasureType type)
{
    switch (type) {
    case Vs::EMeasureType::Length:
        return localized("PreviewLength", "length");
    case Vs::EMeasureType::Radius:
        return localized("PreviewRadius", "radius");
    case Vs::EMeasureType::Distance:
        return localized("PreviewDistance", "distance");
    default:
        return localized("PreviewAngle", "angle");
    }
}

} // namespace

std::wstring MeasureHint::textOf(const MeasureRequest& request, const Vs::MeasureResult& result)
{
    const RealValueCommandInput* input = request.input;
    return hintWord(static_cast<Vs::EMeasureType>(request.type)) + L' ' +
           Vs::Units::toText(result.value, input->inputUnits(), input->unitDisplaySettings());
}

std::optional<Vs::Point2> MeasureHint::placeOf(const MeasureRequest& request)
{
    const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    Vs::Point2 middle;
    int count = 0;
    for (const auto& object : request.objects()) {
        const auto place = Commands::placeOf(object);
        const auto seen = view && place ? view->worldToWindow(*place) : std::nullopt;
        if (!seen)
            continue;
        middle = {middle.x + seen->x, middle.y + seen->y};
        ++count;
    }
    if (count == 0)
        return std::nullopt;
    return Vs::Point2{middle.x / count, middle.y / count};
}

} // namespace Vu::Commands
