#include "Server/Translate/Salvage/FaceTrials.h"

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/XdeModel.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Wall.h"

#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Vs::Translate::Salvage {

namespace {

using Clock = std::chrono::steady_clock;
using Exchange::WorkerMessage;
using namespace std::chrono_literals;

constexpr size_t kMostTrials = 30;
constexpr auto kMostTime = 60s;
constexpr auto kBetweenLooks = 2ms;
constexpr auto kFaceTakes = 3s;
constexpr double kLeastProgress = 0.01;

/// In memory that a process shares with those that it forks.
class SharedNumber
{
public:
    SharedNumber()
    {
        void* const memory =
            mmap(nullptr, sizeof(Number), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            throw std::bad_alloc();
        m_number = new (memory) Number(0);
    }
    ~SharedNumber() { munmap(m_number, sizeof(Number)); }
    SharedNumber(const SharedNumber&) = delete;
    SharedNumber& operator=(const SharedNumber&) = delete;

    using Number = std::atomic<uint32_t>;
    Number* operator->() const { return m_number; }

private:
    Number* m_number;
};

/// Some of the faces, which follow each other in the file.
struct Range
{
    size_t begin = 0, end = 0;
    size_t size() const { return end - begin; }
};

// It reports to the worker in its protocol: Progress with the fraction of the trials; Other with the number
// of each face to leave out; Done at the end, Error if all faces would be left out.
void tell(int pipe, const WorkerMessage& message)
{
    if (!writeAll(pipe, Exchange::encode(message)))
        std::_Exit(0); // Nobody listens any more.
}

class Trials
{
public:
    Trials(std::string_view file, const FaceTrial& trial, uint64_t memory, int pipe)
        : m_file(file), m_trial(trial), m_memory(memory), m_pipe(pipe), m_faces(trial.faces(file))
    {
    }

    /// The faces of which the kernel dies or is too long in meshing, and those of all ranges that could not
    /// be divided far enough.
    std::vector<uint32_t> unreadable()
    {
        std::vector<Range> open{{0, m_faces.size()}};
        while (!open.empty() && m_done < kMostTrials && Clock::now() - m_begin < kMostTime) {
            const auto largest = std::ranges::max_element(open, {}, &Range::size);
            const Range range = *largest;
            open.erase(largest);
            const Outcome outcome = tryRange(range);
            if (outcome.isRead)
                continue;
            if (outcome.face != 0) {
                m_dead.insert(outcome.face);
                open.push_back(range);
            } else if (range.size() == 1) {
                m_dead.insert(m_faces[range.begin]);
            } else {
                const size_t middle = range.begin + range.size() / 2;
                open.insert(open.end(), {{range.begin, middle}, {middle, range.end}});
            }
        }
        for (const Range& range : open)
            m_dead.insert(m_faces.begin() + long(range.begin), m_faces.begin() + long(range.end));
        return {m_dead.begin(), m_dead.end()};
    }

    bool isAll(const std::vector<uint32_t>& faces) const { return faces.size() == m_faces.size(); }

private:
    struct Outcome
    {
        bool isRead = false;
        uint32_t face = 0; ///< The one that was being meshed at the end; 0 for none.
    };

    Outcome tryRange(const Range& range)
    {
        m_meshed->store(0);
        const pid_t parent = getpid();
        const pid_t child = fork();
        if (child == 0)
            read(range, parent);
        Outcome outcome;
        outcome.isRead = child > 0 && waitFor(child);
        outcome.face = m_meshed->load();
        ++m_done;
        return outcome;
    }

    /// Time that a process has worked, which on a busy machine is less than what has passed.
    static std::chrono::milliseconds workOf(pid_t process)
    {
        clockid_t clock;
        timespec time{};
        if (clock_getcpuclockid(process, &clock) == 0)
            clock_gettime(clock, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::milliseconds(time.tv_nsec / 1'000'000);
    }

    bool waitFor(pid_t child)
    {
        constexpr size_t kMegabyte = 1 << 20;
        const std::chrono::milliseconds patience = 5s + 1s * (m_file.size() / kMegabyte);
        auto last = 0ms;
        uint32_t face = 0;
        int state = 0;
        while (waitpid(child, &state, WNOHANG) == 0) {
            // Each face has its time, and so has what comes before them.
            if (const uint32_t now = m_meshed->load(); now != face) {
                face = now;
                last = workOf(child);
            }
            if (workOf(child) - last > (face == 0 ? patience : kFaceTakes) ||
                Clock::now() - m_begin > kMostTime) {
                kill(child, SIGKILL);
                waitpid(child, &state, 0);
                return false;
            }
            tellProgress();
            std::this_thread::sleep_for(kBetweenLooks);
        }
        return WIFEXITED(state) && WEXITSTATUS(state) == 0;
    }

    /// By the time, so that the program hears of it however long one trial takes.
    void tellProgress()
    {
        const double fraction = std::chrono::duration<double>(Clock::now() - m_begin) / kMostTime;
        if (fraction < m_told + kLeastProgress)
            return;
        m_told = fraction;
        tell(m_pipe, {WorkerMessage::Kind::Progress, fraction, {}});
    }

    /// In the child: nothing but these faces, as far as triangles.
    [[noreturn]] void read(const Range& range, pid_t parent) const
    {
        endWithProcess(parent);
        close(m_pipe);
        raiseWall({});
        limitMemory(m_memory);
        try {
            std::unordered_set<uint32_t> others(m_faces.begin(), m_faces.begin() + long(range.begin));
            others.insert(m_faces.begin() + long(range.end), m_faces.end());
            others.insert(m_dead.begin(), m_dead.end());
            Kernel::XdeModel model;
            FaceNumbers numbers;
            if (!m_trial.read(m_file, others, model, numbers))
                std::_Exit(1);
            TDF_LabelSequence shapes;
            XCAFDoc_DocumentTool::ShapeTool(model.document()->Main())->GetShapes(shapes);
            for (const TDF_Label& label : shapes)
                if (!XCAFDoc_ShapeTool::IsAssembly(label) && !XCAFDoc_ShapeTool::IsReference(label))
                    mesh(XCAFDoc_ShapeTool::GetShape(label), numbers);
            std::_Exit(0);
        } catch (...) {
            std::_Exit(1);
        }
    }

    void mesh(const TopoDS_Shape& part, const FaceNumbers& numbers) const
    {
        Kernel::meshWatched(part, {}, [&](const TopoDS_Face& face) {
            const auto number = numbers.find(face.TShape().get());
            m_meshed->store(number == numbers.end() ? 0 : number->second);
        });
        m_meshed->store(0);
        Kernel::extractMesh(part, {});
    }

    std::string_view m_file;
    FaceTrial m_trial;
    uint64_t m_memory;
    int m_pipe;
    std::vector<uint32_t> m_faces;
    std::unordered_set<uint32_t> m_dead;
    SharedNumber m_meshed; ///< The face that the child is meshing; 0 for none.
    size_t m_done = 0;
    double m_told = 0;
    Clock::time_point m_begin = Clock::now();
};

[[noreturn]] void tryFaces(const std::string& path, const FaceTrial& trial, uint64_t memory, int pipe)
{
    bool isFound = false;
    try {
        raiseWall({.readable = {path}, .writable = {}, .folder = {}, .mayFork = true});
        const MappedFile file(path);
        Trials trials(file.bytes(), trial, memory, pipe);
        const std::vector<uint32_t> faces = trials.unreadable();
        isFound = !trials.isAll(faces);
        for (const uint32_t face : faces)
            tell(pipe, {WorkerMessage::Kind::Other, double(face), {}});
    } catch (...) {
        // The file is then refused with what its first reader died of.
    }
    tell(pipe, {isFound ? WorkerMessage::Kind::Done : WorkerMessage::Kind::Error, 0, {}});
    std::_Exit(0);
}

} // namespace

std::shared_ptr<FaceTrials> FaceTrials::start(const std::string& path, const Help& help,
                                              const FaceTrial& trial)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return nullptr;
    const pid_t worker = getpid();
    const pid_t process = fork();
    if (process == 0) {
        close(ends[0]);
        close(Exchange::kWorkerPipe);
        endWithProcess(worker);
        tryFaces(path, trial, help.memory, ends[1]);
    }
    close(ends[1]);
    if (process > 0)
        return std::shared_ptr<FaceTrials>(new FaceTrials(ends[0]));
    close(ends[0]);
    return nullptr;
}

FaceTrials::~FaceTrials()
{
    close(m_pipe);
}

std::optional<std::unordered_set<uint32_t>>
FaceTrials::unreadable(const std::function<void(double)>& progress)
{
    std::unordered_set<uint32_t> faces;
    Exchange::WorkerMessageReader reader;
    for (;;) {
        while (const auto message = reader.next()) {
            if (message->kind == WorkerMessage::Kind::Progress)
                progress(message->fraction);
            else if (message->kind == WorkerMessage::Kind::Other)
                faces.insert(static_cast<uint32_t>(std::lround(message->fraction)));
            else if (message->kind == WorkerMessage::Kind::Done)
                return faces;
            else
                return std::nullopt;
        }
        char buffer[4096];
        const ssize_t got =
            reader.broken() ? 0 : persistent([&] { return ::read(m_pipe, buffer, sizeof buffer); });
        if (got <= 0)
            return std::nullopt;
        reader.add({buffer, static_cast<size_t>(got)});
    }
}

} // namespace Vs::Translate::Salvage
