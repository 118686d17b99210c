#pragma once

#include <cstddef>
#include <string>

namespace Vu {

/// Notifies the user of files that were written elsewhere than a document's own, and offers to show their
/// folder. `path` is the only file, or the one that they are named after. Does nothing without a window: a
/// line answers for itself.
void tellExported(const std::wstring& path, size_t files = 1);

} // namespace Vu
