#include "Server/Base/Progress.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <atomic>

namespace Vs {

namespace {

using Hook = void (*)();

// All of these are touched by signal handlers and threads, so they are lock-free and need no construction.
std::atomic<bool> s_cancelled{false};
std::atomic<int> s_scopes{0};
std::atomic<Hook> s_hook{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<Hook>::is_always_lock_free);

ProgressSink* s_sink = nullptr;
ProgressSink* s_shownBy = nullptr; // The sink with which the outermost progress scope began.
int s_progressScopes = 0;
double s_fraction = 0; // What was shown last.

void enter()
{
    if (s_scopes.load() == 0)
        s_cancelled.store(false);
    s_scopes.fetch_add(1);
}

void leave()
{
    s_scopes.fetch_sub(1);
}

} // namespace

void Progress::sink(ProgressSink* sink)
{
    assertMainThread();
    s_sink = sink;
    // Whoever leaves while something is shown is no longer called.
    if (s_shownBy && s_shownBy != sink)
        s_shownBy = nullptr;
}

void Progress::requestCancel() noexcept
{
    s_cancelled.store(true);
    if (const Hook hook = s_hook.load())
        hook();
}

bool Progress::cancelled() noexcept
{
    return s_cancelled.load();
}

bool Progress::active() noexcept
{
    return s_scopes.load() > 0;
}

void Progress::keepAlive()
{
    assertMainThread();
    if (s_shownBy && !s_shownBy->update(s_fraction, {}))
        requestCancel();
}

void Progress::cancelHook(void (*hook)())
{
    s_hook.store(hook);
}

Progress::CancelScope::CancelScope()
{
    assertMainThread();
    enter();
}

Progress::CancelScope::~CancelScope()
{
    leave();
}

ProgressScope::ProgressScope(const std::wstring& title)
{
    assertMainThread();
    enter();
    if (s_progressScopes++ == 0 && s_sink) {
        s_shownBy = s_sink;
        s_fraction = 0;
        s_shownBy->begin(title);
    }
}

ProgressScope::~ProgressScope()
{
    leave();
    if (--s_progressScopes > 0 || !s_shownBy)
        return;
    ProgressSink* sink = s_shownBy;
    s_shownBy = nullptr;
    sink->end();
}

bool ProgressScope::update(double fraction, const std::wstring& step)
{
    assertMainThread();
    // A fraction that is not a number counts as the start.
    s_fraction = fraction > 0 ? std::min(fraction, 1.0) : 0.0;
    if (s_shownBy && !s_shownBy->update(s_fraction, step))
        s_cancelled.store(true);
    return !s_cancelled.load();
}

} // namespace Vs
