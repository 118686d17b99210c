#pragma once

#include <QString>

namespace Itemhub::Routes {

/// A single-line name: without control characters, characters that change the writing direction, or leading,
/// trailing or repeated blanks, in composed Unicode form.
[[nodiscard]] QString cleanedName(const QString& text);
/// A text that may have several lines; otherwise the same.
[[nodiscard]] QString cleanedText(const QString& text);
/// A plain file name, without folders and not hidden; empty if nothing remains.
[[nodiscard]] QString cleanedFileName(const QString& text);

} // namespace Itemhub::Routes
