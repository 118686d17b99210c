#pragma once

#include <functional>

/// Questions to the lifecycle service that nobody waits for, each on a thread of its own.
namespace Vu::Commands::ItemhubThreads {

/// Runs `ask` on a new thread, and what it gives, if that isn't null, on the main thread afterwards. What
/// `ask` throws is dropped: nobody has asked for it. Does nothing after `end`. Throws std::system_error if
/// there can be no thread. Main thread only.
void run(std::function<std::function<void()>()> ask);

/// No thread begins any more, and those that run change nothing; waits a moment for them. For the end of the
/// program, when the service's client has given up its requests.
void end();

} // namespace Vu::Commands::ItemhubThreads
