#pragma once

#include <source_location>

namespace Vs {

namespace Detail {
[[noreturn]] void promiseBroken(const char* promise, const std::source_location& where);
bool onMainThread();
} // namespace Detail

/// Stops the program, with file and line on the error output, if an assumption of the code is violated: a bug
/// of the program, never the fault of a user or a file. It is checked in every build. `promise` says what
/// should hold.
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
