#include "Server/Translate/ExpectedWork.h"

#include <ctime>
#include <system_error>

namespace Vs::Translate {

namespace {

std::chrono::milliseconds processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::milliseconds(time.tv_nsec / 1'000'000);
}

} // namespace

ExpectedWork::ExpectedWork(Reporter& reporter, std::chrono::milliseconds expected) : m_reporter(reporter)
{
    if (expected.count() == 0)
        return;
    try {
        m_thread = std::thread([this, expected] { report(expected); });
    } catch (const std::system_error&) {
        // Without a thread the work has the time of any other.
    }
}

ExpectedWork::~ExpectedWork()
{
    {
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
    }
    m_end.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void ExpectedWork::report(std::chrono::milliseconds expected)
{
    constexpr std::chrono::milliseconds kBetween{500};
    const std::chrono::milliseconds begin = processorTime();
    std::chrono::milliseconds told = begin;
    std::unique_lock lock(m_mutex);
    while (!m_end.wait_for(lock, kBetween, [this] { return m_hasEnded; })) {
        const std::chrono::milliseconds now = processorTime();
        if (now - begin > expected)
            return;
        if (m_reporter.advance(double((now - told).count()) / double(expected.count())))
            told = now;
    }
}

} // namespace Vs::Translate
