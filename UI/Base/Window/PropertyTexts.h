#pragma once

#include "UI/Base/Window/PropertyValues.h"

#include <QString>

#include <vector>

namespace Vs {
class Document;
}

/// What the properties panel says, in the user's language and units.
namespace Vu::PropertyTexts {

/// "Part", "Face, cylinder", "2 parts, 1 face".
[[nodiscard]] QString kind(const PropertyValues& values, Vs::MeasuredParts::Form form);
/// "40 × 20 × 10 mm". What is of triangles alone is told with "about", here and below.
[[nodiscard]] QString size(const GkVector3d& size, bool isExact);
[[nodiscard]] QString length(double millimetres);
[[nodiscard]] QString area(double value, bool isExact);
[[nodiscard]] QString volume(double value, bool isExact);
/// What several things have not in common.
[[nodiscard]] QString different();

struct Line
{
    QString title, value;
};
/// Of a document as a whole: where it lies, how much is in it, and what add-ins know.
[[nodiscard]] std::vector<Line> document(const Vs::Document& document);

} // namespace Vu::PropertyTexts
