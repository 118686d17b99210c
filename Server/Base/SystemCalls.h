#pragma once

#include <cerrno>
#include <string_view>
#include <unistd.h>

namespace Vs {

/// The result of a system call that is made again as long as a signal interrupts it: one may arrive at any
/// time, and is no reason to give up.
template <class Call>
auto persistent(Call&& call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Writes all bytes, however few the system takes at a time. False, with errno, if it takes no more.
[[nodiscard]] inline bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = persistent([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

} // namespace Vs
