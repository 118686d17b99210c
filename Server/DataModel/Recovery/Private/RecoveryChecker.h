#pragma once

#include "Server/DataModel/Exchange/Private/WorkerProcess.h"
#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs::Recovery {

/// Has recovery files read in separate processes, so that neither the time it takes nor a file that crashes
/// the program affects this one. A file on which a process dies counts as damaged; one that it doesn't finish
/// is left alone. Main thread.
class RecoveryChecker
{
public:
    using Take = std::function<void(const std::string& file, RecoveryCheck check)>;

    /// Adds files to those still to be checked.
    void add(const std::vector<std::string>& files);
    bool isBusy() const { return !m_files.empty(); }
    /// Starts what is due and delivers the results so far. Never waits, unless no process can be created:
    /// then it reads one file itself.
    void work(const Take& take);

private:
    using Clock = std::chrono::steady_clock;

    bool start();
    bool readAnswers(const Take& take);
    void answer(RecoveryCheck check, const Take& take);

    std::deque<std::string> m_files; ///< Still to be reported, the one being read first.
    std::unique_ptr<Exchange::WorkerProcess> m_process;
    Exchange::WorkerMessageReader m_reader;
    size_t m_given = 0;    ///< How many files the process still has.
    bool m_begun = false;  ///< It has reported that it runs.
    bool m_unable = false; ///< No process can run here.
    Clock::time_point m_lastAnswer;
};

} // namespace Vs::Recovery
