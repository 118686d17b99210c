#pragma once

#include <QString>

namespace Itemhub::Routes {

/// A name in one line: without control characters and those that turn the direction of writing around, blanks
/// at its ends or several in a row, in the composed form of Unicode.
[[nodiscard]] QString cleanedName(const QString& text);
/// A text that may have several lines, otherwise the same.
[[nodiscard]] QString cleanedText(const QString& text);
/// A name that is a file's, in no folder and not hidden; empty if nothing remains.
[[nodiscard]] QString cleanedFileName(const QString& text);

} // namespace Itemhub::Routes
