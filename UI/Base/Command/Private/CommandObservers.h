#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Command/CommandObserver.h"

/// The observers of all runs, of any manager. Main thread only.
namespace Vu::CommandObservers {

void add(ICommandObserver* observer);
void remove(ICommandObserver* observer);
/// Returns their complaints.
[[nodiscard]] Vs::Status tell(void (ICommandObserver::*what)(const CommandRun&), const CommandRun& run);

} // namespace Vu::CommandObservers
