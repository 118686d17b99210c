#include "Server/DataModel/Exchange/Worker.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <poll.h>
#include <sys/wait.h>
#include <syslog.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Vs::Exchange {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

constexpr uint64_t kMegabyte = 1 << 20;
constexpr long kFewMegabytes = 4;
constexpr uint64_t kWrittenPerByte = 100;
constexpr int kPollInterval = 40; // ms
// Progress of less than this is noise.
constexpr double kLeastMove = 1e-4;
// The share of a processor, as a divisor, below which a process counts as asleep.
constexpr int kLeastShare = 50;
// The share of `patience` that it must have worked to be given up, as a divisor.
constexpr int kPatientShare = 8;
// By the clock alone, limits are this many times as long.
constexpr int kByTheClock = 4;
// One whose pipe is closed is about to end itself.
constexpr milliseconds kEndTakes{500};

// Bounds that an honest worker never comes near. One that floods the program is read no faster than other
// work allows, and killed.
constexpr int kBuffersPerTurn = 8;
constexpr int kMostSteps = 50;
constexpr size_t kMostTexts = 16 << 20;
constexpr size_t kTextCosts = 64; // beside its letters
constexpr size_t kLongestStep = 200;
constexpr size_t kLongestText = 4000;

/// With less memory than this, starting is pointless: the libraries and threads alone reserve nearly as much.
constexpr uint64_t kLeastMemory = uint64_t(2) << 30;

/// What all workers together may use.
uint64_t memoryForAll()
{
    const uint64_t all = uint64_t(sysconf(_SC_PHYS_PAGES)) * uint64_t(sysconf(_SC_PAGE_SIZE));
    return std::max(all / 5 * 4, kLeastMemory);
}

std::string signalText(int signal)
{
    const char* text = sigdescr_np(signal);
    std::string result = text ? text : "signal " + std::to_string(signal);
    for (char& c : result)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

std::string howItEnded(std::optional<int> state)
{
    // Where SIGCHLD is ignored, all that is known is what the worker said.
    if (!state)
        return {};
    if (WIFSIGNALED(*state))
        return " (" + signalText(WTERMSIG(*state)) + ")";
    return " (exit code " + std::to_string(WEXITSTATUS(*state)) + ")";
}

std::string seconds(milliseconds time)
{
    return std::to_string(duration_cast<std::chrono::seconds>(time).count()) + " seconds";
}

/// For the machine's administrator; a user can do nothing about it.
void logOnce(const std::string& note)
{
    static std::once_flag logged;
    std::call_once(logged, [&] { syslog(LOG_USER | LOG_NOTICE, "quillet: %s", note.c_str()); });
}

} // namespace

WorkerLimits WorkerLimits::forFile(uint64_t bytes)
{
    WorkerLimits limits;
    const auto megabytes = static_cast<long>(bytes / kMegabyte);
    limits.stalled += std::chrono::seconds(2 * megabytes);
    // With a few megabytes, no step takes long even on a heavily shared processor.
    limits.patience += std::chrono::seconds(10 * std::max(0L, megabytes - kFewMegabytes));
    limits.total += std::chrono::seconds(30 * megabytes);
    limits.written += kWrittenPerByte * bytes;
    return limits;
}

std::string Worker::role() const
{
    return !m_arguments.empty() && m_arguments.front() == "export" ? "writer" : "reader";
}

void Worker::start()
{
    start(memoryForAll());
}

void Worker::start(uint64_t memory)
{
    if (m_process.running() || m_end != End::Running)
        return;
    m_memory = m_limits.memory > 0 ? m_limits.memory : memory;
    m_started = m_moved = m_wanted = Clock::now();
    std::vector<std::string> arguments = m_arguments;
    arguments.push_back("--memory=" + std::to_string(m_memory));
    arguments.push_back("--written=" + std::to_string(m_limits.written));
    const std::string path = WorkerProcess::pathOf(m_program);
    if (const int error = m_process.start(path, std::move(arguments)); error != 0) {
        m_end = End::Failed;
        m_fault = "the worker " + path + " can't be started: " + std::strerror(error);
    }
}

// Forgets the results of the first try.
void Worker::startAgain(uint64_t memory)
{
    m_end = End::Running;
    m_reader = {};
    m_fraction = 0;
    m_step = "starting";
    m_steps = 0;
    m_texts = 0;
    m_error.clear();
    m_fault.clear();
    m_warnings.clear();
    m_others.clear();
    m_movedWork = milliseconds(0);
    start(memory);
}

void Worker::readMessages()
{
    char buffer[65536];
    ssize_t got = 0;
    for (int i = 0; i < kBuffersPerTurn; ++i) {
        got = read(m_process.pipe(), buffer, sizeof buffer);
        if (got > 0)
            m_reader.add({buffer, static_cast<size_t>(got)});
        else if (got == 0 || errno != EINTR)
            break;
    }
    const bool ended = got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR);
    while (const auto message = m_reader.next())
        take(*message);
    if (m_done)
        leave();
    else if (m_reader.broken() || m_texts > kMostTexts)
        kill(End::Crashed, "the " + role() + "'s answers can't be understood, while " + m_step);
    else if (ended)
        reap();
}

void Worker::take(const WorkerMessage& message)
{
    switch (message.kind) {
    case WorkerMessage::Kind::Progress:
        takeProgress(message);
        break;
    case WorkerMessage::Kind::Warning:
        keepText(m_warnings, message.text.substr(0, kLongestText));
        break;
    case WorkerMessage::Kind::Error:
        m_error = message.text.substr(0, kLongestText);
        break;
    case WorkerMessage::Kind::Other:
        keepText(m_others, message.text);
        break;
    case WorkerMessage::Kind::Note:
        logOnce(message.text.substr(0, kLongestText));
        break;
    case WorkerMessage::Kind::Done:
        m_done = true;
        break;
    }
}

void Worker::takeProgress(const WorkerMessage& message)
{
    const std::string step = message.text.substr(0, kLongestStep);
    const bool nextStep = step != m_step && ++m_steps <= kMostSteps;
    if (message.fraction > m_fraction + kLeastMove || nextStep)
        noteProgress();
    m_fraction = std::max(m_fraction, std::min(message.fraction, 1.0));
    m_step = step;
}

void Worker::keepText(std::vector<std::string>& list, const std::string& text)
{
    m_texts += text.size() + kTextCosts;
    if (m_texts <= kMostTexts)
        list.push_back(text);
}

void Worker::noteProgress()
{
    m_moved = m_wanted = Clock::now();
    m_movedWork = m_process.processorTime().value_or(m_movedWork);
}

// Its result is complete. It ends by itself now, or is made to.
void Worker::leave()
{
    m_process.dismiss();
    m_end = End::Done;
}

void Worker::waitForDeparting()
{
    WorkerProcess::waitForDismissed();
}

// The pipe is closed: the worker has ended or is about to.
void Worker::reap()
{
    const std::optional<int> state = m_process.collect(kEndTakes);
    if (m_error.starts_with("memory:")) {
        m_end = End::Exhausted;
        m_fault = "the " + role() + " needed more memory than there is while " + m_step;
    } else if (!m_error.empty()) {
        m_end = End::Failed;
        m_fault = m_error;
    } else {
        m_end = End::Crashed;
        m_fault = "the " + role() + " crashed" + howItEnded(state) + " while " + m_step;
    }
}

void Worker::kill(End why, std::string fault)
{
    m_process.collect(milliseconds(0));
    m_end = why;
    m_fault = std::move(fault);
}

// A process that hardly works isn't busy, unless it wants to and gets no processor: it waits for something
// that won't come. A single look may catch it between two pieces of work, so it takes many.
bool Worker::isAsleep(Clock::time_point now, milliseconds worked)
{
    if (m_process.wantsProcessor())
        m_wanted = now;
    return worked < (now - m_moved) / kLeastShare && now - m_wanted > m_limits.stalled / 2;
}

void Worker::checkLimits(Clock::time_point now)
{
    const auto waited = now - m_moved;
    const auto running = now - m_started;
    if (waited < std::min(m_limits.stalled / 2, m_limits.patience) && running < m_limits.total)
        return;
    const milliseconds work = m_process.processorTime().value_or(m_movedWork);
    const milliseconds worked = work - m_movedWork;
    const bool asleep = isAsleep(now, worked);
    if ((waited > m_limits.stalled && (asleep || worked > m_limits.stalled)) ||
        (waited > m_limits.patience && worked > m_limits.patience / kPatientShare) ||
        waited > kByTheClock * m_limits.patience)
        kill(End::Stalled, "the " + role() + " was ended after " +
                               seconds(duration_cast<milliseconds>(waited)) + " without progress while " +
                               m_step);
    else if ((running > m_limits.total && work > m_limits.total) || running > kByTheClock * m_limits.total)
        kill(End::Stalled, "the " + role() + " was ended after " +
                               seconds(duration_cast<milliseconds>(running)) + " while " + m_step);
}

/// Workers that are run together.
class Worker::Crew
{
public:
    explicit Crew(std::span<Worker* const> workers) : m_waiting(workers.rbegin(), workers.rend())
    {
        const size_t shares = std::max<uint64_t>(1, m_memory / kLeastMemory);
        const size_t processors = std::max(1u, std::thread::hardware_concurrency());
        m_atOnce = std::max<size_t>(1, std::min({shares, processors, workers.size()}));
    }

    /// Returns false when all have ended.
    bool startSome()
    {
        while (m_running.size() < m_atOnce && !m_waiting.empty()) {
            Worker* worker = m_waiting.back();
            m_waiting.pop_back();
            worker->start(m_memory / m_atOnce);
            if (worker->m_end == End::Running)
                m_running.push_back(worker);
        }
        if (m_running.empty() && !m_hungry.empty()) {
            m_running.push_back(m_hungry.back());
            m_hungry.pop_back();
            m_running.back()->startAgain(m_memory);
        }
        std::erase_if(m_running, [](const Worker* worker) { return worker->m_end != End::Running; });
        return !m_running.empty() || !m_hungry.empty();
    }

    void look()
    {
        std::vector<pollfd> pipes;
        for (const Worker* worker : m_running)
            pipes.push_back({worker->m_process.pipe(), POLLIN, 0});
        poll(pipes.data(), pipes.size(), kPollInterval);
        const Clock::time_point now = Clock::now();
        for (size_t i = 0; i < m_running.size(); ++i) {
            if (pipes[i].revents != 0)
                m_running[i]->readMessages();
            if (m_running[i]->m_end == End::Running)
                m_running[i]->checkLimits(now);
        }
    }

    void cancel()
    {
        for (Worker* worker : m_running)
            if (worker->m_end == End::Running)
                worker->kill(End::Cancelled, "cancelled");
        for (auto* list : {&m_waiting, &m_hungry})
            for (Worker* worker : std::exchange(*list, {}))
                worker->m_end = End::Cancelled;
    }

    void sortOut()
    {
        for (Worker* worker : m_running)
            if (worker->m_end == End::Exhausted && worker->m_limits.memory == 0 &&
                worker->m_memory < m_memory)
                m_hungry.push_back(worker);
        std::erase_if(m_running, [](const Worker* worker) { return worker->m_end != End::Running; });
    }

private:
    const uint64_t m_memory = memoryForAll();
    size_t m_atOnce;
    std::vector<Worker*> m_waiting; ///< The first is the last.
    std::vector<Worker*> m_running;
    std::vector<Worker*> m_hungry; ///< Those that need more than a share.
};

void Worker::run(std::span<Worker* const> workers, const Watch& watch)
{
    Crew crew(workers);
    while (crew.startSome()) {
        crew.look();
        crew.sortOut();
        if (watch && !watch()) {
            crew.cancel();
            crew.sortOut();
        }
    }
}

} // namespace Vs::Exchange
