#pragma once

#include <string>

namespace Vs {
class SelectionMgr;
class Asset;
} // namespace Vs

namespace Vu {

/// What is selected, for the status bar: "Face of plate_1, plane, 3600 mm²". Read from the meshes that are
/// shown, so that a click loads nothing; what these know only nearly is told with "about". Of several things,
/// how many; empty without any.
[[nodiscard]] std::wstring selectionText(Vs::SelectionMgr& manager, const Vs::Asset& asset);

} // namespace Vu
