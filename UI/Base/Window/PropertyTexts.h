#pragma once

#include "UI/Base/Window/PropertyValues.h"

#include <QString>

#include <vector>

namespace Vs {
class Document;
}

/// The texts of the properties panel, in the user's language and units.
namespace Vu::PropertyTexts {

/// "Part", "Face, cylinder", "2 parts, 1 face".
[[nodiscard]] QString kind(const PropertyValues& values, Vs::MeasuredParts::Form form);
/// "40 × 20 × 10 mm". Values known only from triangles are marked "about", here and below.
[[nodiscard]] QString size(const GkVector3d& size, bool isExact);
[[nodiscard]] QString length(double millimetres);
[[nodiscard]] QString area(double value, bool isExact);
[[nodiscard]] QString volume(double value, bool isExact);
/// The text for values that differ.
[[nodiscard]] QString different();

struct Line
{
    QString title, value;
};
/// For a document as a whole: its location, its contents, and what add-ins know.
[[nodiscard]] std::vector<Line> document(const Vs::Document& document);

} // namespace Vu::PropertyTexts
