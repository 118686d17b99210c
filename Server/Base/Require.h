#pragma once

#include <source_location>

namespace Vs {

namespace Detail {
[[noreturn]] void promiseBroken(const char* promise, const std::source_location& where);
bool onMainThread();
} // namespace Detail

/// Stops the program, with file and line on the error output, if a promise of the code is broken: the
/// program's own fault, never the user's or a file's. It is checked in every build. `promise` says what
/// should have held.
inline void require(bool holds, const char* promise,
                    const std::source_location& where = std::source_location::current())
{
    if (!holds) [[unlikely]]
        Detail::promiseBroken(promise, where);
}

/// For what only the main thread may use. The main thread is the one that loaded the program.
inline void assertMainThread(const std::source_location& where = std::source_location::current())
{
    require(Detail::onMainThread(), "only the main thread comes here", where);
}

} // namespace Vs
