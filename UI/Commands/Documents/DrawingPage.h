#pragma once

#include "Server/DataModel/Measure/LineDrawing.h"
#include "UI/Base/Program/VectorPage.h"

#include <optional>
#include <string>
#include <string_view>

namespace Vu::Commands {

/// What a drawing says of itself.
struct DrawingFacts
{
    std::wstring name, date;
};

/// A scale as people write it: "2:1", "1:2.5" or "0.5"; nothing for other texts, and for what isn't positive.
std::optional<double> readScale(std::wstring_view text);
/// The other way round: "2:1" for 2.
std::wstring scaleText(double scale);

/// The lines on a sheet with a frame and a title block. Without a scale, the largest usual one with which
/// they fit on A4 is taken; with one, the smallest sheet from A4 to A0 that has room, lying on its side.
/// Nothing if even A0 hasn't.
std::optional<VectorPage> drawingPage(const Vs::LineDrawing& drawing, const DrawingFacts& facts,
                                      std::optional<double> scale);

} // namespace Vu::Commands
