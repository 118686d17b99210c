#pragma once

#include <string>

namespace Vs {
class SelectionMgr;
class Asset;
class LogicalSelection;
} // namespace Vs

namespace Vu {

/// The selection, for the status bar: "Face of plate_1, plane, 3600 mm²". Read from the displayed meshes, so
/// that a click loads nothing; values that these only approximate are marked "about". For several things, how
/// many; empty without any.
[[nodiscard]] std::wstring selectionText(Vs::SelectionMgr& manager, const Vs::Asset& asset);
/// The same for one thing, whether selected or not.
[[nodiscard]] std::wstring selectionText(const Vs::LogicalSelection& selection, const Vs::Asset& asset);

} // namespace Vu
