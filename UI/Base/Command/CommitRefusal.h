#pragma once

#include <string>

namespace Vu {

class CommandBase;

/// Why a running command can't be committed now: what its alerts or its inputs say; empty if it can. A
/// command without inputs always can, and so can one that has a step to keep.
[[nodiscard]] std::wstring whyNotCommitted(CommandBase& command);

} // namespace Vu
