#include "Server/Base/Python/Interruptible.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/path.hpp>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <exception>
#include <mutex>
#include <stop_token>
#include <thread>

namespace Vs::Python {

namespace py = pybind11;

/// While this exists, the running script pauses every now and then, so that a window can draw and accept a
/// cancel.
class Interruptible::KeptAlive
{
public:
    KeptAlive() : m_thread([this](const std::stop_token& stop) { run(stop); }) {}

private:
    static constexpr std::chrono::milliseconds kInterval{30};

    void run(const std::stop_token& stop)
    {
        std::unique_lock lock(m_mutex);
        const auto never = [] { return false; };
        while (!stop.stop_requested()) {
            m_wake.wait_for(lock, stop, kInterval, never);
            if (stop.stop_requested() || s_asked.exchange(true))
                continue;
            // The script sees the pending request when it gets the interpreter back.
            const Lock interpreter;
            s_asked = Py_AddPendingCall(&comeBy, nullptr) == 0;
        }
    }
    static int comeBy(void*)
    {
        s_asked = false;
        try {
            Progress::keepAlive();
        } catch (const std::exception& fault) {
            warn(Strings::widen(fault.what()));
        }
        return 0;
    }

    static inline std::atomic<bool> s_asked = false;
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::jthread m_thread; ///< Goes first.
};

Interruptible::Interruptible(const std::string& script)
    : m_scope(L"Script: " + boost::filesystem::path(script).filename().wstring())
{
    if (s_depth++ == 0)
        m_keptAlive = std::make_unique<KeptAlive>();
    Progress::cancelHook([] { PyErr_SetInterruptEx(SIGINT); });
}

// Releasing the interpreter throws only where there is none, and this code is run by one.
Interruptible::~Interruptible() // NOLINT(bugprone-exception-escape)
{
    // Scripts run scripts; the outer one goes on.
    if (--s_depth > 0)
        return;
    {
        const py::gil_scoped_release others; // It may wait for the interpreter.
        m_keptAlive.reset();
    }
    Progress::cancelHook(nullptr);
    // A request that came too late for this script must not affect the next one.
    if (PyErr_CheckSignals() != 0)
        PyErr_Clear();
}

} // namespace Vs::Python
