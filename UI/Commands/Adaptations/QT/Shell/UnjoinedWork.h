#pragma once

#include <functional>

/// Work on threads that nobody waits for: a disk that doesn't answer must not hold up the end of the program.
namespace Vu::Commands::UnjoinedWork {

/// What is done with what was read.
using Then = std::function<void()>;
/// Waits for the disk. When the program ends it is cut off wherever it is, so it touches nothing that lives
/// longer than itself.
using Reading = std::function<Then()>;

/// Runs `reading` on one of a few threads, as soon as one is free, and behind it, on the same one, what it
/// returns. Once the program ends nothing more begins; what `reading` returned and is running then is waited
/// for.
void start(Reading reading);

} // namespace Vu::Commands::UnjoinedWork
