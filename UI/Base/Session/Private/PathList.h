#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"

#include <optional>
#include <string>
#include <vector>

namespace Vs {
class Asset;
class Status;
} // namespace Vs

namespace Vu::PathList {

/// One path as it is; several separated by bars, with those that contain a bar, a quote or a backslash in
/// quotes.
[[nodiscard]] std::wstring text(const std::vector<std::wstring>& paths);
/// The objects that a text names; a component's identifier may stand for its path. Nothing, with an error in
/// `status`, if one doesn't exist.
[[nodiscard]] std::optional<std::vector<Vs::StrongRef<Vs::Selection>>>
objects(const std::wstring& text, Vs::Asset& asset, Vs::Status& status);

} // namespace Vu::PathList
