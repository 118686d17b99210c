#pragma once

#include "Server/Translate/Reporter.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Vs::Translate {

/// While this object lives, the program hears that the current stage goes on, though the kernel reports
/// nothing: for as much of this process's time as the work may honestly take. After that it is up to the
/// kernel's own reports again.
class ExpectedWork
{
public:
    ExpectedWork(Reporter& reporter, std::chrono::milliseconds expected);
    ~ExpectedWork();
    ExpectedWork(const ExpectedWork&) = delete;
    ExpectedWork& operator=(const ExpectedWork&) = delete;

private:
    void report(std::chrono::milliseconds expected);

    Reporter& m_reporter;
    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_hasEnded = false;
    std::thread m_thread;
};

} // namespace Vs::Translate
