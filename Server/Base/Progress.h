#pragma once

#include <string>

namespace Vs {

/// Shows the progress of long work. Its `update` is the chance to keep a window alive.
class ProgressSink
{
public:
    virtual ~ProgressSink() = default;
    virtual void begin(const std::wstring& title) = 0;
    /// `fraction` from 0 to 1. Returns false when the person asked to cancel.
    virtual bool update(double fraction, const std::wstring& step) = 0;
    virtual void end() = 0;
};

namespace Progress {

/// Installs the one sink; not owned, null for none. Main thread.
void sink(ProgressSink* sink);

/// Asks the running work to stop. May be called from a signal handler or any thread.
void requestCancel() noexcept;
/// Whether somebody has asked since the outermost scope began. Any thread.
[[nodiscard]] bool cancelled() noexcept;
/// Whether long work is running that a cancel would reach. Any thread.
[[nodiscard]] bool active() noexcept;

/// For long work that doesn't know its progress: the chance to keep a window alive and accept a cancel. Main
/// thread.
void keepAlive();

/// Called from requestCancel, in its context, so it must be async-signal-safe; null for none.
void cancelHook(void (*hook)());

/// Work that can be cancelled but shows nothing itself: a replay, a script. Progress scopes inside it share
/// its cancellation. Main thread.
class [[nodiscard]] CancelScope
{
public:
    CancelScope();
    ~CancelScope();
    CancelScope(const CancelScope&) = delete;
    CancelScope& operator=(const CancelScope&) = delete;
};

} // namespace Progress

/// Long work between construction and destruction. Scopes nest: inner ones share the outer one's display.
/// Main thread.
class [[nodiscard]] ProgressScope
{
public:
    explicit ProgressScope(const std::wstring& title);
    ~ProgressScope();
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    /// Returns false when the work should be given up.
    bool update(double fraction, const std::wstring& step = {});
};

} // namespace Vs
