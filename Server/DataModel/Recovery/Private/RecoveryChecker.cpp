#include "Server/DataModel/Recovery/Private/RecoveryChecker.h"

#include "Server/Base/PathInfo.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace Vs::Recovery {

using namespace std::chrono_literals;
using Answer = RecoveryCheck::Answer;

namespace {

constexpr const char* kProgram = "quillet-check-recovery";
constexpr size_t kMostFiles = 200; // of one process, whose arguments they are
constexpr auto kPatience = 120s;   // for one file

} // namespace

void RecoveryChecker::add(const std::vector<std::string>& files)
{
    m_files.insert(m_files.end(), files.begin(), files.end());
}

void RecoveryChecker::work(const Take& take)
{
    if (m_files.empty())
        return;
    if (m_unable || (!m_process && !start())) {
        answer(RecoveryCheck::of(m_files.front()), take);
        return;
    }
    const bool open = readAnswers(take);
    if (open && Clock::now() - m_lastAnswer <= kPatience)
        return;
    m_unable = !m_begun;
    if (m_begun && m_given > 0)
        answer({Answer::Strange, {}}, take);
    // Nobody waits for its end.
    m_process->dismiss();
    m_process.reset();
}

bool RecoveryChecker::start()
{
    m_given = std::min(m_files.size(), kMostFiles);
    std::vector<std::string> arguments{PathInfo::recoveryDirectory().string()};
    arguments.insert(arguments.end(), m_files.begin(),
                     m_files.begin() + static_cast<std::ptrdiff_t>(m_given));
    m_process = std::make_unique<Exchange::WorkerProcess>();
    m_reader = {};
    m_begun = false;
    m_lastAnswer = Clock::now();
    if (m_process->start(Exchange::WorkerProcess::pathOf(kProgram), std::move(arguments)) == 0)
        return true;
    m_process.reset();
    m_given = 0;
    return false;
}

// Says whether the process may have more to tell.
bool RecoveryChecker::readAnswers(const Take& take)
{
    char piece[4096];
    ssize_t got;
    while ((got = read(m_process->pipe(), piece, sizeof piece)) > 0 || (got < 0 && errno == EINTR)) {
        if (got > 0)
            m_reader.add({piece, static_cast<size_t>(got)});
        while (const auto message = m_given > 0 ? m_reader.next() : std::nullopt)
            if (std::exchange(m_begun, true))
                answer(RecoveryCheck::read(message->text), take);
    }
    return got < 0 && errno == EAGAIN && !m_reader.broken() && m_given > 0;
}

void RecoveryChecker::answer(RecoveryCheck check, const Take& take)
{
    const std::string file = m_files.front();
    m_files.pop_front();
    m_given -= m_given > 0;
    m_lastAnswer = Clock::now();
    take(file, std::move(check));
}

} // namespace Vs::Recovery
