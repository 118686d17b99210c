#pragma once

#include <set>

namespace Vs {

class OptionGroup;

/// The groups that exist: a queued write asks whether its group is still there, and tests put all of them
/// back.
std::set<OptionGroup*>& optionGroups();

} // namespace Vs
