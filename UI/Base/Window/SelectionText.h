#pragma once

#include <string>

namespace Vs {
class SelectionMgr;
class Asset;
class LogicalSelection;
} // namespace Vs

namespace Vu {

/// What is selected, for the status bar: "Face of plate_1, plane, 3600 mm²". Read from the meshes that are
/// shown, so that a click loads nothing; what these know only nearly is told with "about". Of several things,
/// how many; empty without any.
[[nodiscard]] std::wstring selectionText(Vs::SelectionMgr& manager, const Vs::Asset& asset);
/// The same of one thing, whether it is selected or not.
[[nodiscard]] std::wstring selectionText(const Vs::LogicalSelection& selection, const Vs::Asset& asset);

} // namespace Vu
