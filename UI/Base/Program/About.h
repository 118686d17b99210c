#pragma once

#include <string>

namespace Vu {

/// What the program is, in two lines: its name with the version, and its purpose.
[[nodiscard]] std::wstring aboutText();

/// What it is made of, for fault reports: the versions of the geometry kernel and of Qt, what draws the
/// pictures, the system, and the licences of the libraries. Several lines. `graphics` is what draws in the
/// window; where that is empty, what has drawn pictures without one. Main thread only.
[[nodiscard]] std::wstring aboutDetails(const std::wstring& graphics = {});

} // namespace Vu
