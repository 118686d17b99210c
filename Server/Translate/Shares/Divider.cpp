#include "Server/Translate/Shares/Divider.h"

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Exchange/LostFaces.h"
#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/DataModel/Model/FileMapping.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/MemoryEnd.h"
#include "Server/Translate/Salvage/Salvage.h"
#include "Server/Translate/Shares/PieceStore.h"
#include "Server/Translate/Shares/SharePlan.h"
#include "Server/Translate/Shares/ShareReader.h"
#include "Server/Translate/Wall.h"

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <new>
#include <optional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Vs::Translate::Shares {

namespace {

using Clock = std::chrono::steady_clock;
using Exchange::WorkerMessage;
using namespace std::chrono_literals;

constexpr auto kBetweenLooks = 5ms;
/// With less memory a reader isn't worth starting.
constexpr uint64_t kLeastMemory = uint64_t(2) << 30;

/// The index, among the shares, of what was read before.
constexpr size_t kKnown = kMostShares - 1;

/// How a reader ends, as its exit code; with any other code it died.
enum End { kRead = 0, kUnsound = 4, kNoMemory = 5, kNothing = 6 };

/// How a share is read after its reader has died.
enum class Way { Whole, Cleaned, Alone };

struct Try
{
    size_t share = 0;
    Way way = Way::Whole;
    size_t item = 0;     ///< Which of those that are read alone.
    bool isLast = false; ///< With all memory, while no other runs.
};

struct Running
{
    Try what;
    pid_t process = -1;
    off_t begin = 0; ///< Of its output.
    double progress = 0;
    Clock::time_point moved;
    std::chrono::milliseconds work{0}; ///< Processor time when it last made progress.
    Clock::duration patience{};
};

std::chrono::milliseconds processorTimeOf(pid_t process)
{
    clockid_t clock;
    timespec time;
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0ms;
    return std::chrono::seconds(time.tv_sec) + std::chrono::milliseconds(time.tv_nsec / 1'000'000);
}

class Divider
{
public:
    Divider(const Division& division, const StepScan& scan, const SharePlan& plan)
        : m_division(division), m_scan(scan), m_plan(plan), m_store(division.pieces)
    {
    }

    bool run()
    {
        takeKnown();
        tell(m_division.pipe, {WorkerMessage::Kind::Progress, double(m_shares.size() + m_hasKnown), {}});
        if (m_hasKnown)
            tell(m_division.pipe, {WorkerMessage::Kind::Done, double(kKnown), {}});
        for (size_t i = 0; i < m_shares.size(); ++i) {
            m_waiting.push_back({i});
            m_division.board->weigh(i, m_shares[i].bytes);
        }
        while (!m_waiting.empty() || !m_running.empty()) {
            while (canStart())
                if (!start())
                    return false;
            if (!collect())
                return false;
            look();
        }
        return true;
    }

    static void tell(int pipe, const WorkerMessage& message)
    {
        if (!writeAll(pipe, Exchange::encode(message)))
            std::_Exit(0); // Nobody listens any more.
    }

private:
    const Share& shareOf(const Try& what) const { return m_shares[what.share]; }
    const Piece& pieceOf(uint32_t number) const { return m_plan.pieces()[number]; }
    Items itemsOf(const Try& what) const
    {
        Items items;
        for (const uint32_t piece : shareOf(what).pieces)
            items.insert(items.end(), pieceOf(piece).items.begin(), pieceOf(piece).items.end());
        std::sort(items.begin(), items.end());
        return items;
    }

    int fileOf(const Try& what) const { return m_division.files[what.share + 1]; }

    /// Takes the pieces that were read before, from whatever file, and distributes the others.
    void takeKnown()
    {
        std::vector<uint32_t> unknown;
        PieceKeys keys(m_scan, m_plan);
        for (uint32_t i = 0; i < m_plan.pieces().size(); ++i) {
            m_keys.push_back(m_store.isUsed() ? keys.of(pieceOf(i)) : PieceKey());
            if (m_store.find(m_keys[i], m_division.files[kKnown + 1]))
                m_hasKnown = true;
            else
                unknown.push_back(i);
        }
        if (!unknown.empty())
            m_shares = m_plan.shares(unknown, m_division.readers);
    }

    /// A reader's result for sound pieces.
    void keep(const Try& what)
    {
        if (!m_store.isUsed())
            return;
        try {
            const auto file = FileMapping::adopt(dup(fileOf(what)));
            std::string_view bytes = file->bytes();
            for (const uint32_t piece : shareOf(what).pieces)
                if (const auto block = ShareBlock::take(bytes))
                    m_store.keep(m_keys[piece], *block);
        } catch (const std::runtime_error&) {
            // The worker notices it as well.
        }
    }

    bool canStart() const
    {
        if (m_waiting.empty() || m_running.size() >= m_division.readers)
            return false;
        const bool isAlone = std::any_of(m_running.begin(), m_running.end(),
                                         [](const Running& one) { return one.what.isLast; });
        return m_running.empty() || (!isAlone && !m_waiting.front().isLast);
    }

    bool start()
    {
        Running running{.what = m_waiting.front()};
        m_waiting.pop_front();
        running.begin = lseek(fileOf(running.what), 0, SEEK_END);
        constexpr uint64_t kMegabyte = 1 << 20;
        running.patience = 8s + 2s * (shareOf(running.what).bytes / kMegabyte);
        running.moved = Clock::now();
        const pid_t divider = getpid();
        running.process = fork();
        if (running.process == 0)
            read(running.what, divider);
        if (running.process < 0)
            return false;
        m_running.push_back(running);
        return true;
    }

    /// In the reader's process.
    [[noreturn]] void read(const Try& what, pid_t divider)
    {
        endWithProcess(divider);
        close(m_division.pipe);
        raiseWall({});
        limitMemory(what.isLast ? m_division.memory
                                : std::max(kLeastMemory, m_division.memory / m_division.readers));
        endWhenMemoryIsShort(kNoMemory);
        try {
            ShareBoard* const board = m_division.board;
            const size_t share = what.share;
            const std::optional<ShareJob> job = jobFor(what);
            if (!job)
                std::_Exit(kNothing);
            std::vector<ShareResult> results = readShare(*job, what.way == Way::Whole, [=](double fraction) {
                board->progress(share, std::max(fraction, board->progress(share)));
            });
            results.front().warnings = job->warnings;
            for (ShareResult& result : results) {
                if (what.way != Way::Whole)
                    tellMissing(what, result);
                result.write(fileOf(what));
            }
            std::_Exit(kRead);
        } catch (const Unsound&) {
            std::_Exit(kUnsound);
        } catch (const std::bad_alloc&) {
            std::_Exit(kNoMemory);
        } catch (const Standard_OutOfMemory&) {
            std::_Exit(kNoMemory);
        } catch (...) {
            std::_Exit(isMemoryShort() ? kNoMemory : 1);
        }
    }

    /// Nothing if nothing sound is left to read.
    std::optional<ShareJob> jobFor(const Try& what) const
    {
        Items items = itemsOf(what);
        ShareJob job;
        job.isAlone = m_shares.size() < m_division.readers;
        if (what.way == Way::Alone) {
            items = {items[what.item]};
            job.parts.push_back(partOf(items));
        } else {
            for (const uint32_t piece : shareOf(what).pieces)
                job.parts.push_back(partOf(pieceOf(piece).items));
        }
        job.text = m_plan.text(items, what.way != Way::Whole);
        if (what.way == Way::Whole)
            return job;
        Salvage::Salvaged sound = Salvage::salvage(job.text);
        job.text = std::move(sound.text);
        // Warnings about what no longer belongs to any item are of no interest.
        for (std::string& warning : sound.warnings)
            if (Exchange::LostFaces::ofWarning(warning))
                job.warnings.push_back(std::move(warning));
        // Its representation may have changed.
        for (ShareJob::Part& part : job.parts)
            for (SharedRepresentation& one : part.representations)
                one.isWhole = false;
        return job.text.empty() ? std::nullopt : std::optional(job);
    }

    ShareJob::Part partOf(const Items& items) const
    {
        ShareJob::Part part{m_plan.representations(items), {}};
        for (const uint32_t one : m_plan.closureOf(items))
            if (m_plan.isStub(one))
                part.wanted.push_back(m_scan.number(one));
        return part;
    }

    /// About items of which nothing is left.
    void tellMissing(const Try& what, ShareResult& result) const
    {
        for (const uint32_t item : itemsOf(what))
            for (const auto& [number, shape] : result.shapes)
                if (number == m_scan.number(item) && shape.IsNull())
                    result.warnings.push_back(lossOf(item));
    }
    std::string lossOf(uint32_t item) const
    {
        const size_t faces = std::max<size_t>(1, m_plan.facesOf(item));
        return Exchange::LostFaces{faces, faces, m_plan.partOf(item)}.warning();
    }

    /// Collects what has ended; false if the file must be read as a whole.
    bool collect()
    {
        int state = 0;
        const pid_t ended = waitpid(-1, &state, WNOHANG | WUNTRACED);
        if (ended <= 0) {
            std::this_thread::sleep_for(kBetweenLooks);
            return true;
        }
        const auto found = std::find_if(m_running.begin(), m_running.end(),
                                        [&](const Running& one) { return one.process == ended; });
        if (found == m_running.end())
            return true;
        if (WIFSTOPPED(state)) { // Nobody would resume it.
            kill(ended, SIGKILL);
            return true;
        }
        const Running running = *found;
        m_running.erase(found);
        const int code = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
        if (code == kRead) {
            if (running.what.way == Way::Whole)
                keep(running.what);
            finish(running.what);
            return true;
        }
        if (ftruncate(fileOf(running.what), running.begin) != 0 || code == kUnsound)
            return false;
        return code == kNoMemory ? giveMemory(running.what) : tryAgain(running.what);
    }

    void finish(const Try& what)
    {
        if (what.way == Way::Alone && what.item + 1 < itemsOf(what).size()) {
            m_waiting.push_back({what.share, Way::Alone, what.item + 1});
            return;
        }
        m_division.board->progress(what.share, 1);
        tell(m_division.pipe, {WorkerMessage::Kind::Done, double(what.share), {}});
    }

    bool giveMemory(Try what)
    {
        if (what.isLast)
            return false;
        what.isLast = true;
        m_waiting.push_back(what);
        return true;
    }

    bool tryAgain(const Try& what)
    {
        if (what.way == Way::Whole) {
            m_waiting.push_back({what.share, Way::Cleaned});
        } else if (what.way == Way::Cleaned) {
            m_waiting.push_back({what.share, Way::Alone});
        } else {
            ShareResult result;
            const uint32_t item = itemsOf(what)[what.item];
            result.shapes.emplace_back(m_scan.number(item), TopoDS_Shape());
            result.warnings = {lossOf(item)};
            result.write(fileOf(what));
            finish(what);
        }
        return true;
    }

    /// Kills readers that make no progress.
    void look()
    {
        const auto now = Clock::now();
        for (Running& one : m_running) {
            if (const double progress = m_division.board->progress(one.what.share);
                progress != one.progress) {
                one.progress = progress;
                one.moved = now;
                one.work = processorTimeOf(one.process);
            } else if (now - one.moved > 4 * one.patience ||
                       (now - one.moved > one.patience &&
                        processorTimeOf(one.process) - one.work > one.patience)) {
                kill(one.process, SIGKILL);
            }
        }
    }

    const Division& m_division;
    const StepScan& m_scan;
    const SharePlan& m_plan;
    const PieceStore m_store;
    std::vector<PieceKey> m_keys; ///< Of the pieces.
    std::vector<Share> m_shares;
    bool m_hasKnown = false; ///< Whether pieces were read before.
    std::deque<Try> m_waiting;
    std::vector<Running> m_running;
};

bool divideFile(const Division& division)
{
    const MappedFile file(division.path);
    const std::optional<StepScan> scan = StepScan::of(file.bytes());
    const std::optional<SharePlan> plan =
        scan ? SharePlan::of(*scan, {division.readers, division.isAlways}) : std::nullopt;
    if (!plan || !writeAll(division.files.front(), plan->structure()))
        return false;
    return Divider(division, *scan, *plan).run();
}

} // namespace

void divide(const Division& division)
{
    bool isDone = false;
    try {
        raiseWall({.readable = {division.path}, .writable = {}, .folder = division.pieces, .mayFork = true});
        // Nothing of the file has been examined yet.
        warmUp();
        isDone = divideFile(division);
    } catch (...) {
        // It is then read as a whole, and any fault is reported.
    }
    if (!isDone)
        Divider::tell(division.pipe, {WorkerMessage::Kind::Error, 0, {}});
    std::_Exit(0);
}

} // namespace Vs::Translate::Shares
