#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Vu {

/// Links by which other programs, a browser say, start this one or speak to the one that runs:
/// "quillet:ticket/...". Anybody can write such a link, so nothing in it may be trusted. Main thread only.
class ProgramLink
{
public:
    /// Any thread.
    [[nodiscard]] static bool isLink(std::string_view text) { return text.starts_with("quillet:"); }

    /// The function that follows links; null removes it.
    using Follower = std::function<void(const std::string& link)>;
    static void follower(Follower follower);
    /// Has a link followed after the current event. Without a follower nothing happens.
    static void follow(const std::string& link);
};

} // namespace Vu
