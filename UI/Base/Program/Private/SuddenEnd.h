#pragma once

namespace Vu {

/// A display that can't be reached any more: Xlib and Qt then call exit() from within an event. Everything is
/// in use at that moment, so that nothing may be destroyed. From `watch` to `over`, a display that is lost
/// ends the process by `now`, any other call of exit() removes what is half-written and ends it without
/// another step, and what Qt takes for hopeless (a display that was never there) is told and ends it without
/// the look of a crash.
class SuddenEnd
{
public:
    /// May be called again, to come before what has been made since.
    static void watch();
    static void over();

    /// Ends the process now, in the same way: what isn't saved is kept in recovery files before.
    [[noreturn]] static void now(int code);
};

} // namespace Vu
