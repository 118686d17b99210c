#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <string>
#include <vector>

namespace Vs {

class Asset;
class SelectionSet;

/// The paths of the objects in a set, in its order. Whatever else is selected has none.
[[nodiscard]] std::vector<ObjectPath> pathsIn(const SelectionSet& set);
/// The same as text (pathText).
[[nodiscard]] std::vector<std::wstring> pathTextsIn(const SelectionSet& set, const Asset& asset);

} // namespace Vs
