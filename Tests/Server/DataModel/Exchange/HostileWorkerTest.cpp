// Workers that somebody else controls: what they can do to the program, and to the machine.

#include "Server/DataModel/Exchange/Format.h"
#include "Server/DataModel/Exchange/Worker.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Vs::Exchange;
using namespace std::chrono_literals;
using TestSupport::ScratchFolder;

namespace {

constexpr const char* kProbe = "test_worker_probe";

constexpr int kDeadly[] = {SIGTERM, SIGINT, SIGHUP, SIGSEGV, SIGKILL};

/// Neither time nor memory is limiting.
constexpr WorkerLimits kPatient{1h, 1h, 0, 1h};

void run(Worker& worker, const Worker::Watch& watch = {})
{
    Worker* workers[] = {&worker};
    Worker::run(workers, watch);
}

void expectNoChild()
{
    Worker::waitForDeparting();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a process was left behind";
    EXPECT_EQ(errno, ECHILD);
}

/// The hexadecimal digits of a message as the pipe has it.
std::string hexOf(const std::string& bytes)
{
    std::string hex;
    for (const char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
        hex += digits;
    }
    return hex;
}

/// Keeps one processor busy while it lives.
class Hog
{
public:
    explicit Hog(size_t processor)
        : m_thread([this, processor] {
              cpu_set_t only;
              CPU_ZERO(&only);
              CPU_SET(static_cast<size_t>(processor), &only);
              sched_setaffinity(0, sizeof only, &only);
              while (!m_stop)
                  ;
          })
    {
    }
    ~Hog()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

size_t someProcessor()
{
    cpu_set_t ours;
    sched_getaffinity(0, sizeof ours, &ours);
    size_t processor = 0;
    while (!CPU_ISSET(processor, &ours))
        ++processor;
    return processor;
}

/// The next child that ends within some seconds; -1 if none does.
pid_t nextToEnd(int& state)
{
    for (const auto until = std::chrono::steady_clock::now() + 20s; std::chrono::steady_clock::now() < until;
         std::this_thread::sleep_for(5ms))
        if (const pid_t ended = waitpid(-1, &state, WNOHANG); ended != 0)
            return ended;
    return -1;
}

/// A program that runs a worker, as a separate process. It writes a byte to the pipe when the worker spins.
pid_t startProgram(int pipe)
{
    const pid_t program = fork();
    if (program != 0)
        return program;
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    for (const int one : kDeadly)
        std::signal(one, SIG_DFL);
    Worker worker(kProbe, {"spins"}, kPatient);
    bool told = false;
    run(worker, [&] {
        if (!told && worker.step() == "spinning")
            told = write(pipe, "x", 1) == 1;
        return true;
    });
    _exit(1);
}

/// A line of the `status` file of a child of this process.
std::string statusOfChild(const std::string& name)
{
    for (const auto& entry : boost::filesystem::directory_iterator("/proc")) {
        std::ifstream stream((entry.path() / "status").c_str());
        std::string found;
        bool ours = false;
        for (std::string line; std::getline(stream, line);) {
            ours = ours || line == "PPid:\t" + std::to_string(getpid());
            if (line.starts_with(name + ':'))
                found = line.substr(name.size() + 2);
        }
        if (ours)
            return found;
    }
    return {};
}

} // namespace

TEST(HostileWorkerTest, AWorkerThatLivesOnAfterItsEndIsEnded)
{
    Worker silent(kProbe, {"closes its pipe"}, kPatient);
    run(silent);
    EXPECT_EQ(silent.end(), Worker::End::Crashed);
    EXPECT_NE(silent.fault().find("killed"), std::string::npos) << silent.fault();

    Worker done(kProbe, {"is done and lives on"}, kPatient);
    run(done);
    EXPECT_EQ(done.end(), Worker::End::Done);
    expectNoChild();
}

TEST(HostileWorkerTest, AFloodOfMessagesKeepsTheProgramFromNothing)
{
    // The program can still be asked to stop,
    Worker stopped(kProbe, {"floods with progress"}, kPatient);
    int turns = 0;
    run(stopped, [&] { return ++turns < 20; });
    EXPECT_EQ(stopped.end(), Worker::End::Cancelled);
    // notices that nothing goes on, whatever the flood says,
    Worker stuck(kProbe, {"floods with progress"}, {200ms, 1h, 0, 1h});
    run(stuck);
    EXPECT_EQ(stuck.end(), Worker::End::Stalled) << stuck.fault();
    // and doesn't keep everything it receives.
    Worker loud(kProbe, {"floods with warnings"}, kPatient);
    run(loud);
    EXPECT_EQ(loud.end(), Worker::End::Crashed) << loud.fault();
    EXPECT_LT(loud.warnings().size(), 1'000'000u);
    expectNoChild();
}

TEST(HostileWorkerTest, AnswersThatCannotBeRightEndTheWorkAndNothingElse)
{
    using Kind = WorkerMessage::Kind;
    const std::string warning = encode({Kind::Warning, 0, "true"});
    const std::string odd = encode({static_cast<Kind>('?'), 0, "?"});
    const std::string noNumber = encode({Kind::Progress, std::numeric_limits<double>::quiet_NaN(), "odd"});
    const std::string beyond = encode({Kind::Progress, 1e300, "odd"});
    const std::string done = encode({Kind::Done, 1, {}});
    const std::pair<std::string, Worker::End> rows[] = {
        {"", Worker::End::Crashed},
        {std::string(4, '\0'), Worker::End::Crashed},
        {std::string(4, '\xff') + "more", Worker::End::Crashed},
        {std::string("\x08\0\0\0", 4) + std::string(8, 'W'), Worker::End::Crashed},
        {warning.substr(0, warning.size() - 1), Worker::End::Crashed},
        {warning + std::string(20'000, '\xee'), Worker::End::Crashed},
        {noNumber + beyond, Worker::End::Crashed},
        {odd + noNumber + beyond + done, Worker::End::Done},
        {done + std::string(9, '\xff'), Worker::End::Done},
    };
    for (const auto& [bytes, end] : rows) {
        SCOPED_TRACE(hexOf(bytes.substr(0, 40)));
        Worker worker(kProbe, {"says", hexOf(bytes)}, kPatient);
        run(worker);
        EXPECT_EQ(worker.end(), end) << worker.fault();
        EXPECT_GE(worker.fraction(), 0);
        EXPECT_LE(worker.fraction(), 1);
    }
    expectNoChild();
}

TEST(HostileWorkerTest, OneThatGetsNoProcessorIsWaitedForAndOneThatSleepsIsNot)
{
    const size_t processor = someProcessor();
    {
        const Hog hog(processor);
        Worker starved(kProbe, {"starves", std::to_string(processor)}, {100ms, 1h, 0, 1h});
        run(starved);
        EXPECT_EQ(starved.end(), Worker::End::Done) << starved.fault();
    }
    Worker asleep(kProbe, {"sleeps"}, {100ms, 1h, 0, 1h});
    run(asleep);
    EXPECT_EQ(asleep.end(), Worker::End::Stalled) << asleep.fault();
}

TEST(HostileWorkerTest, WorkersShareTheMemoryAndWriteNoEndlessFile)
{
    std::vector<std::unique_ptr<Worker>> owned;
    std::vector<Worker*> workers;
    for (int i = 0; i < 8; ++i) {
        owned.push_back(std::make_unique<Worker>(kProbe, std::vector<std::string>{"tells its limits"},
                                                 WorkerLimits::forFile(1 << 20)));
        workers.push_back(owned.back().get());
    }
    Worker::run(workers, {});
    const size_t atOnce = std::min<size_t>(workers.size(), std::max(1u, std::thread::hardware_concurrency()));
    const uint64_t all = uint64_t(sysconf(_SC_PHYS_PAGES)) * uint64_t(sysconf(_SC_PAGE_SIZE));
    for (const Worker* worker : workers) {
        ASSERT_EQ(worker->warnings().size(), 3u) << worker->fault();
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
        EXPECT_LE(std::stoull(worker->warnings()[0]), std::max(all / atOnce, uint64_t(2) << 30));
#endif
        EXPECT_EQ(std::stoull(worker->warnings()[1]), WorkerLimits::forFile(1 << 20).written);
        EXPECT_EQ(std::stoull(worker->warnings()[2]), 0u);
    }
    // A worker that needs more than its share gets it when the others are done, and one that needs more than
    // there is never does.
    const std::pair<uint64_t, Worker::End> rows[] = {{all / 10 * 7, Worker::End::Done},
                                                     {all, Worker::End::Exhausted}};
    for (const auto& [need, end] : rows) {
        const std::vector<std::string> arguments{"needs memory", std::to_string(need)};
        Worker first(kProbe, arguments, kPatient), second(kProbe, arguments, kPatient);
        Worker* both[] = {&first, &second};
        Worker::run(both, {});
        EXPECT_EQ(first.end(), end);
        EXPECT_EQ(second.end(), end);
    }
}

TEST(HostileWorkerTest, NoWorkerOutlivesTheProgramWhateverEndsIt)
{
    expectNoChild();
    // A process whose parent has ended becomes a child of this one.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const int signal : kDeadly) {
        SCOPED_TRACE(strsignal(signal));
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t program = startProgram(ends[1]);
        close(ends[1]);
        char byte;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
        close(ends[0]);
        kill(program, signal);
        int state = 0;
        EXPECT_EQ(waitpid(program, &state, 0), program);
        EXPECT_EQ(WTERMSIG(state), signal);
        EXPECT_GT(nextToEnd(state), 0) << "the worker goes on";
        EXPECT_TRUE(WIFSIGNALED(state)) << "it should have been ended";
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

TEST(HostileWorkerTest, BehindTheWallItReachesItsFileAndItsResultAlone)
{
    const ScratchFolder folder, home;
    folder.write("model.stp", "a model");
    folder.write("result", "");
    folder.write("neighbour", "of a format that knows no others");
    home.write("secret", "a key");
    Worker worker(kProbe, {"attacks", folder.path().string(), home.path().string()}, kPatient);
    run(worker);
    EXPECT_EQ(worker.end(), Worker::End::Done) << worker.fault();
    std::vector<std::string> done = worker.warnings();
    ASSERT_FALSE(done.empty());
    const bool files = done.front().find("files") != std::string::npos;
    const bool calls = done.front().find("calls") != std::string::npos;
    done.erase(done.begin());
    const auto does = [&](const char* deed) {
        return std::find(done.begin(), done.end(), deed) != done.end();
    };
    for (const char* deed :
         {"reads its file", "writes its result", "reads a system library", "computes in threads"})
        EXPECT_TRUE(does(deed)) << deed;
    if (files) {
        for (const char* deed : {"reads the home", "reads a neighbour", "writes a file", "makes a file",
                                 "writes its file", "removes a file", "runs a program"})
            EXPECT_FALSE(does(deed)) << deed;
        EXPECT_EQ(TestSupport::contentOf(home.path() / "secret"), "a key");
    }
    if (calls) {
        for (const char* deed : {"opens a connection", "opens a local connection", "signals its parent",
                                 "makes a process", "takes back a limit", "removes a file", "runs a program"})
            EXPECT_FALSE(does(deed)) << deed;
    }
    if (!files || !calls)
        GTEST_SKIP() << "NOTICE: the running kernel doesn't offer the whole wall: "
                     << worker.warnings().front();
}

// The wall keeps the kernel from a file; here it is known beforehand what the kernel would ask for.
TEST(HostileWorkerTest, WithoutLandlockAnObjThatMayNameFilesElsewhereIsRefused)
{
    const ScratchFolder folder;
    const boost::filesystem::path inner = folder.path() / "inner";
    boost::filesystem::create_directories(inner);
    folder.write("two.mtl", "newmtl paint\nKd 1 0 0\n");
    folder.write("inner/beside.mtl", "newmtl paint\nKd 1 0 0\n");
    boost::filesystem::create_symlink("../two.mtl", inner / "link.mtl");
    const auto end = [&](const std::string& line) {
        const std::string file =
            folder.write("inner/a.obj", "v 0 0 0\n" + line + "\nv 1 0 0\nv 1 1 0\nf 1 2 3\n").string();
        Worker worker(kProbe,
                      {"lacks Landlock", workerOf(Format::Obj), "import", "obj", file,
                       (folder.path() / "out.model").string()},
                      kPatient);
        run(worker);
        return worker.end() == Worker::End::Done ? "read" : worker.fault();
    };
    for (const char* line : {"mtllib ../two.mtl", "mtllib link.mtl", "mtllib beside.mtl ../two.mtl",
                             "# mtllib /etc/fstab", "mtl\\\nlib ../two.mtl"})
        EXPECT_NE(end(line).find("outside of its own folder"), std::string::npos) << line;
    for (const char* line : {"v 0 0 0 \\\r\n", "mtllib \v../two.mtl", "mtllib sub\\beside.mtl"})
        EXPECT_NE(end(line).find("can't be checked"), std::string::npos) << line;
    for (const char* line : {"mtllib beside.mtl", "# C:\\models\\a.max"})
        EXPECT_EQ(end(line), "read") << line;
}

TEST(HostileWorkerTest, TheRealWorkersStandBehindTheWall)
{
    expectNoChild();
    const ScratchFolder folder;
    // Long enough to see who reads it.
    std::string triangles = "solid many\n";
    for (int i = 0; i < 800000; ++i)
        triangles += "facet normal 0 0 1 outer loop vertex " + std::to_string(i) +
                     " 0 0 vertex 0 1 0 vertex 0 0 1 endloop endfacet\n";
    const std::string file = folder.write("many.stl", triangles + "endsolid many\n").string();
    Worker worker(workerOf(Format::Stl), {"import", "stl", file, (folder.path() / "out.model").string()},
                  kPatient);
    std::string privileges;
    const auto until = std::chrono::steady_clock::now() + 20s;
    run(worker, [&] {
        privileges = statusOfChild("NoNewPrivs");
        return privileges != "1" && std::chrono::steady_clock::now() < until;
    });
    EXPECT_EQ(privileges, "1");
}
