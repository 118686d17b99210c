#pragma once

#include <functional>

/// Work on detached threads: a disk that doesn't respond must not delay the end of the program.
namespace Vu::Commands::UnjoinedWork {

/// What is done with the result.
using Then = std::function<void()>;
/// Waits for the disk. When the program ends it is cut off at any point, so it must not touch anything that
/// outlives it.
using Reading = std::function<Then()>;

/// Runs `reading` on one of a few threads, as soon as one is free, and then, on the same one, the function it
/// returns. Once the program ends nothing more is started; a returned function that is already running is
/// waited for.
void start(Reading reading);

} // namespace Vu::Commands::UnjoinedWork
