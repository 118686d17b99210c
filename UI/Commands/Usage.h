#pragma once

#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/UsageEvents.h"

namespace Vu::Commands {

/// Sends the usage key of a document command that was committed, if the user agreed to usage events.
void sendUsage(ETerminationReason reason, const char* key);

} // namespace Vu::Commands
