#include "UI/Commands/Measure/MeasureState.h"

#include "Server/DataModel/Measure/MeasureMgr.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Commands/Measure/MeasureCmd.h"

#include <algorithm>

namespace Vu::Commands {

using Vs::EMeasureType;

std::vector<MeasureRequest::Object> MeasureRequest::objects() const
{
    std::vector<Object> all{selection1, selection2, selection3};
    std::erase(all, Object());
    return all;
}

bool MeasureRequest::measure(Vs::MeasureResult& result) const
{
    const Vs::MeasureMgr& manager = *Vs::MeasureMgr::get();
    const auto kind = static_cast<EMeasureType>(type);
    if (selection3)
        return manager.measure(selection1, selection2, selection3, kind, result);
    if (selection2)
        return manager.measure(selection1, selection2, kind, result);
    return manager.measure(selection1, kind, result);
}

Vs::StrongRef<Vs::LogicalSelection>& MeasureState::selection(int number)
{
    return number == 1 ? selection1 : number == 2 ? selection2 : selection3;
}

void MeasureState::add(EMeasureType type, RealValueCommandInput* input,
                       const Vs::StrongRef<Vs::LogicalSelection>& first,
                       const Vs::StrongRef<Vs::LogicalSelection>& second,
                       const Vs::StrongRef<Vs::LogicalSelection>& third)
{
    requests.push_back({first, second, third, static_cast<int>(type), input});
}

void MeasureState::requestSingle(int selectionNumber)
{
    const Vs::StrongRef<Vs::LogicalSelection>& object = selection(selectionNumber);
    if (!object)
        return;
    const MeasureSide& side = owner->inputs().sides[size_t(selectionNumber) - 1];
    for (RealValueCommandInput* input : side.all())
        input->disable();
    const unsigned types = owner->measureTypes();
    if (types & kMeasureDistance) {
        add(EMeasureType::Radius, side.radius, object);
        add(EMeasureType::Length, side.length, object);
    }
    if (types & kMeasureArea) {
        add(EMeasureType::Area, side.area, object);
        add(EMeasureType::LoopLength, side.loopLength, object);
    }
    if (types & kMeasureVolume)
        add(EMeasureType::Volume, side.volume, object);
    if (types & kMeasurePosition) {
        add(EMeasureType::PositionX, side.positionX, object);
        add(EMeasureType::PositionY, side.positionY, object);
        add(EMeasureType::PositionZ, side.positionZ, object);
    }
    if (!owner->passive())
        owner->showHud(selectionNumber);
}

void MeasureState::requestPair()
{
    if (!selection1 || !selection2)
        return;
    owner->clearPreviews();
    const MeasurePair& pair = owner->inputs().pair;
    for (RealValueCommandInput* input : pair.all())
        input->disable();
    const unsigned types = owner->measureTypes();
    if (types & kMeasureDistance)
        add(EMeasureType::Distance, pair.distance, selection1, selection2);
    if (types & kMeasureAngle)
        add(EMeasureType::Angle, pair.angle, selection1, selection2);
    if (types & kMeasurePosition) {
        add(EMeasureType::DeltaX, pair.deltaX, selection1, selection2);
        add(EMeasureType::DeltaY, pair.deltaY, selection1, selection2);
        add(EMeasureType::DeltaZ, pair.deltaZ, selection1, selection2);
    }
}

void MeasureState::requestTriple()
{
    if (!selection1 || !selection2 || !selection3)
        return;
    owner->clearPreview(false);
    RealValueCommandInput* angle = owner->inputs().pair.angle;
    angle->disable();
    if (owner->measureTypes() & kMeasureAngle)
        add(EMeasureType::Angle, angle, selection1, selection2, selection3);
    if (!owner->passive())
        owner->showHud(3);
}

void MeasureState::requestAll()
{
    requestPair();
    requestSingle(1);
    requestSingle(2);
    requestTriple();
}

void MeasureState::runRequests()
{
    if (owner->passive()) {
        runPassive();
        return;
    }
    for (const MeasureRequest& request : requests)
        run(request);
    requests.clear();
}

void MeasureState::run(const MeasureRequest& request)
{
    const MeasurePair& pair = owner->inputs().pair;
    Vs::MeasureResult result;
    if (!request.measure(result)) {
        if (request.input == pair.angle || request.input == pair.distance)
            owner->clearPreview(request.input == pair.distance);
        request.input->disable();
        return;
    }
    request.input->enable();
    request.input->value(result.value);
    if (request.input == pair.distance || request.input == pair.angle)
        owner->showPreview(result, request.input == pair.distance);
}

const MeasureRequest* MeasureState::firstAnswered(Vs::MeasureResult& result) const
{
    const auto answered = std::find_if(requests.begin(), requests.end(), [&](const MeasureRequest& request) {
        result = {};
        return request.measure(result);
    });
    return answered == requests.end() ? nullptr : &*answered;
}

void MeasureState::runPassive()
{
    Vs::MeasureResult result;
    if (const MeasureRequest* answered = firstAnswered(result)) {
        if (owner->deliver(*answered, result))
            return;
        owner->showHint(*answered, result);
        const auto type = static_cast<EMeasureType>(answered->type);
        if (type == EMeasureType::Distance || type == EMeasureType::Angle)
            owner->showPreview(result, type == EMeasureType::Distance);
    }
    requests.clear();
}

} // namespace Vu::Commands
