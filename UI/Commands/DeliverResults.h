#pragma once

namespace Vs {
class Tasks;
}

namespace Vu::Commands {

/// Has the results that background threads queue run on the main thread: also below a dialog, which holds
/// back deferred tasks; but not in the middle of long work, which may concern the same files. A run without a
/// main loop runs them between two lines. The queue must live as long as the process; it is let go by
/// Vs::Tasks::wakeUp.
void deliverResults(Vs::Tasks& results);

} // namespace Vu::Commands
