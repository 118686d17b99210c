#pragma once

namespace Vu {

/// What ends a run with a window without asking anybody: SIGTERM, SIGHUP and SIGINT, and the end of the
/// desktop's session. What isn't saved is kept in recovery files, and the program ends. One that is too busy
/// to hear of it ends after two seconds of work, or after five of waiting, with what was kept before. The
/// session is told that nothing stands in its way.
class EndSignals
{
public:
    /// For a run whose window is there; once. A signal that is ignored (nohup) stays so.
    static void watch();
    /// From a handler of SIGINT that doesn't end the program itself.
    static void end(int signal) noexcept;
};

} // namespace Vu
