#pragma once

#include "Server/Base/UniqueString.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace Vs {

namespace Metrics {

/// A named stop watch of the process, made once and kept for good. Main thread only.
class TimeMetric
{
public:
    /// The one metric of that name; `title`, which people read, is that of the first call.
    [[nodiscard]] static TimeMetric* make(const UniqueString* name, const std::wstring& title);
    /// All metrics, in the order in which they were made.
    static std::vector<const TimeMetric*> all();

    const UniqueString* name() const { return m_name; }
    const std::wstring& title() const { return m_title; }

    /// Starts measuring; a running measurement starts over.
    void start();
    /// Ends the measurement. Does nothing if none runs.
    void stop();
    bool running() const { return m_running; }

    size_t count() const { return m_count; }               ///< Measurements that ended.
    double seconds() const { return m_seconds; }           ///< Of the last one.
    double totalSeconds() const { return m_totalSeconds; } ///< Of all.

private:
    TimeMetric(const UniqueString* name, std::wstring title) : m_name(name), m_title(std::move(title)) {}

    const UniqueString* m_name;
    std::wstring m_title;
    std::chrono::steady_clock::time_point m_start;
    bool m_running = false;
    size_t m_count = 0;
    double m_seconds = 0;
    double m_totalSeconds = 0;
};

} // namespace Metrics

/// Measures the scope it lives in, under a name; the sums are kept per name for the whole process.
class [[nodiscard]] Clock
{
public:
    struct Sum
    {
        size_t count = 0;
        double seconds = 0;
    };

    explicit Clock(const UniqueString* name) : m_name(name), m_start(std::chrono::steady_clock::now()) {}
    ~Clock();
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    /// The time that the scopes of that name took so far. Any thread.
    [[nodiscard]] static Sum sum(const UniqueString* name);

private:
    const UniqueString* m_name;
    std::chrono::steady_clock::time_point m_start;
};

} // namespace Vs
