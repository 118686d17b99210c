#pragma once

#include "Server/DataModel/Measure/LineDrawing.h"
#include "UI/Base/Program/VectorPage.h"

#include <optional>
#include <string>
#include <string_view>

namespace Vs {
class Document;
class Status;
class UniqueString;
} // namespace Vs

namespace Vu {
class CommandContext;
}

namespace Vu::Commands {

/// What a drawing says of itself.
struct DrawingFacts
{
    std::wstring name, date;
};

/// A sheet as it lies, in millimetres.
struct DrawingSheet
{
    std::wstring name;
    double width, height;
};

/// Those of a document today.
DrawingFacts factsOf(const Vs::Document& document);

/// A scale as people write it: "2:1", "1:2.5" or "0.5"; nothing for other texts, and for what isn't positive.
std::optional<double> readScale(std::wstring_view text);
/// As an argument of a command, where "0.5" and "2" come as numbers.
std::wstring scaleSaid(const CommandContext& context, const Vs::UniqueString* name);
/// A warning if bodies were left out of a drawing.
void tellLeftOut(const Vs::LineDrawing& drawing, Vs::Status& status);
/// An error: the text is not a scale.
void tellNoScale(const std::wstring& said, Vs::Status& status);
/// The other way round: "2:1" for 2.
std::wstring scaleText(double scale);

/// The lines on a sheet with a frame and a title block. Without a scale, the largest usual one with which
/// they fit on A4 is taken; with one, the smallest sheet from A4 to A0 that has room, lying on its side.
/// Nothing if even A0 hasn't. Where a sheet is given, it is that one.
std::optional<VectorPage> drawingPage(const Vs::LineDrawing& drawing, const DrawingFacts& facts,
                                      std::optional<double> scale,
                                      const std::optional<DrawingSheet>& wanted = std::nullopt);

} // namespace Vu::Commands
