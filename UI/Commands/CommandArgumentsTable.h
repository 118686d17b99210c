#pragma once

#include "UI/Base/Command/CommandArguments.h"

namespace Vu::Commands {

/// What each command of this add-in can be given at its start.
std::span<const CommandArguments> commandArguments();

} // namespace Vu::Commands
