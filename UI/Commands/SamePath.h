#pragma once

#include <string>

namespace Vu::Commands {

/// Whether two paths are the same, character by character, but for the kind of slash.
[[nodiscard]] bool isSamePath(const std::wstring& a, const std::wstring& b);

} // namespace Vu::Commands
