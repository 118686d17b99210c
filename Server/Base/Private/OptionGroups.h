#pragma once

#include <set>

namespace Vs {

class OptionGroup;

/// The existing groups: a queued write asks whether its group still exists, and tests reset all of them.
std::set<OptionGroup*>& optionGroups();

} // namespace Vs
