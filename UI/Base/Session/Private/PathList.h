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

/// One path as it stands; several with bars between them, where those that hold a bar, a quote or a backslash
/// stand in quotes.
[[nodiscard]] std::wstring text(const std::vector<std::wstring>& paths);
/// The objects that a text names, of which a component's identifier may stand for its path. Nothing, with an
/// error in `status`, if one isn't there.
[[nodiscard]] std::optional<std::vector<Vs::StrongRef<Vs::Selection>>>
objects(const std::wstring& text, Vs::Asset& asset, Vs::Status& status);

} // namespace Vu::PathList
