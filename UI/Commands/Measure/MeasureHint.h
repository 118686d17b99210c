#pragma once

#include "Server/Base/Point2.h"
#include "UI/Commands/Measure/MeasureState.h"

#include <optional>
#include <string>

/// The result that a passive measuring tool shows beside the pointer.
namespace Vu::Commands::MeasureHint {

std::wstring textOf(const MeasureRequest& request, const Vs::MeasureResult& result);
/// In the middle of what is measured, in pixels of the active view; nothing where none of it is seen.
std::optional<Vs::Point2> placeOf(const MeasureRequest& request);

} // namespace Vu::Commands::MeasureHint
