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
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
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

    /// The faces of all ranges that died, divided as far as the trials suffice.
    std::vector<uint32_t> unreadable()
    {
        std::vector<Range> dead{{0, m_faces.size()}};
        while (m_done + 2 <= kMostTrials && Clock::now() - m_begin < kMostTime) {
            const auto largest = std::ranges::max_element(dead, {}, &Range::size);
            if (largest == dead.end() || largest->size() < 2)
                break;
            const Range whole = *largest;
            dead.erase(largest);
            const size_t middle = whole.begin + whole.size() / 2;
            for (const Range half : {Range{whole.begin, middle}, Range{middle, whole.end}})
                if (!canRead(half))
                    dead.push_back(half);
        }
        std::vector<uint32_t> faces;
        for (const Range& range : dead)
            faces.insert(faces.end(), m_faces.begin() + long(range.begin), m_faces.begin() + long(range.end));
        return faces;
    }

    bool isAll(const std::vector<uint32_t>& faces) const { return faces.size() == m_faces.size(); }

private:
    bool canRead(const Range& range)
    {
        const pid_t parent = getpid();
        const pid_t child = fork();
        if (child == 0)
            read(range, parent);
        const bool isRead = child > 0 && waitFor(child);
        tell(m_pipe, {WorkerMessage::Kind::Progress, double(++m_done) / kMostTrials, {}});
        return isRead;
    }

    bool waitFor(pid_t child) const
    {
        // Less than what the program waits for a sign of life from the worker.
        constexpr size_t kMegabyte = 1 << 20;
        const auto patience = 5s + 1s * (m_file.size() / kMegabyte);
        const auto begin = Clock::now();
        int state = 0;
        while (waitpid(child, &state, WNOHANG) == 0) {
            if (Clock::now() - begin > patience) {
                kill(child, SIGKILL);
                waitpid(child, &state, 0);
                return false;
            }
            std::this_thread::sleep_for(kBetweenLooks);
        }
        return WIFEXITED(state) && WEXITSTATUS(state) == 0;
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
            Kernel::XdeModel model;
            if (!m_trial.read(m_file, others, model))
                std::_Exit(1);
            TDF_LabelSequence shapes;
            XCAFDoc_DocumentTool::ShapeTool(model.document()->Main())->GetFreeShapes(shapes);
            for (const TDF_Label& label : shapes)
                Kernel::meshShape(XCAFDoc_ShapeTool::GetShape(label), {}, {}, Kernel::MeshThreads::Own);
            std::_Exit(0);
        } catch (...) {
            std::_Exit(1);
        }
    }

    std::string_view m_file;
    FaceTrial m_trial;
    uint64_t m_memory;
    int m_pipe;
    std::vector<uint32_t> m_faces;
    size_t m_done = 0;
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
