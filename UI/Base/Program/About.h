#pragma once

#include <string>

namespace Vu {

/// What the program is, in two lines: its name with the version, and what it is for.
[[nodiscard]] std::wstring aboutText();

/// What it is made of, for who reports a fault: the versions of the geometry kernel and of Qt, what draws the
/// pictures, the system, and the licences of the libraries. Several lines. Needs the main thread, and may
/// open a context of the graphics to ask it.
[[nodiscard]] std::wstring aboutDetails();

} // namespace Vu
