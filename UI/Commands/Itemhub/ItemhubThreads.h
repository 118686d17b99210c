#pragma once

#include <functional>

/// Background requests to the lifecycle service, each on a thread of its own.
namespace Vu::Commands::ItemhubThreads {

/// Runs `ask` on a new thread, then the function it returns, if not null, on the main thread. Exceptions of
/// `ask` are dropped: the user didn't ask for it. Does nothing after `end`. Throws std::system_error if no
/// thread can be started. Main thread only.
void run(std::function<std::function<void()>()> ask);

/// Starts no more threads, and lets running ones change nothing; waits for them briefly. For the end of the
/// program, when the service's client has cancelled its requests.
void end();

} // namespace Vu::Commands::ItemhubThreads
