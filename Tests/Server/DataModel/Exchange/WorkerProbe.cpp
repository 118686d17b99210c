// A worker that behaves as no worker should, in the way that its first argument says. Tests start it instead
// of a real one.

#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/Translate/Wall.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <iterator>
#include <netinet/in.h>
#include <sched.h>
#include <seccomp.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Vs::Exchange;
using Kind = WorkerMessage::Kind;

namespace {

void put(const std::string& bytes)
{
    for (size_t done = 0; done < bytes.size();) {
        const ssize_t count = write(kWorkerPipe, bytes.data() + done, bytes.size() - done);
        if (count <= 0)
            std::_Exit(3);
        done += static_cast<size_t>(count);
    }
}

void say(Kind kind, const std::string& text, double fraction = 0)
{
    put(encode({kind, fraction, text}));
}

[[noreturn]] void liveOn()
{
    for (;;)
        pause();
}

void spin()
{
    Vs::Translate::endWithParent(kWorkerPipe);
    say(Kind::Progress, "spinning", 0.1);
    for (std::atomic<unsigned> turns = 0;;)
        ++turns;
}

// One that gets next to nothing of the processor that the first argument names.
void starve(size_t processor)
{
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(static_cast<size_t>(processor), &only);
    sched_setaffinity(0, sizeof only, &only);
    const sched_param none{};
    sched_setscheduler(0, SCHED_IDLE, &none);
    constexpr std::clock_t kWork = CLOCKS_PER_SEC / 1000 * 4;
    for (const std::clock_t start = std::clock(); std::clock() - start < kWork;)
        ;
    say(Kind::Done, {});
}

uint64_t limitOf(decltype(RLIMIT_AS) resource)
{
    rlimit limit{};
    getrlimit(resource, &limit);
    return limit.rlim_cur;
}

/// The number after an argument's prefix.
uint64_t numberBehind(const std::vector<std::string>& arguments, const std::string& beginning)
{
    for (const std::string& argument : arguments)
        if (argument.starts_with(beginning))
            return std::strtoull(argument.c_str() + beginning.size(), nullptr, 10);
    return 0;
}

void limit(const std::vector<std::string>& arguments)
{
    Vs::Translate::limitFiles(numberBehind(arguments, "--written="));
    Vs::Translate::raiseWall({});
    Vs::Translate::limitMemory(numberBehind(arguments, "--memory="));
    for (const auto resource : {RLIMIT_AS, RLIMIT_FSIZE, RLIMIT_CORE})
        say(Kind::Warning, std::to_string(limitOf(resource)));
    say(Kind::Done, {});
}

bool reads(const std::string& path)
{
    char byte;
    const int file = open(path.c_str(), O_RDONLY);
    return file >= 0 && read(file, &byte, 1) == 1;
}

bool forks()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    return child > 0;
}

bool runs(const char* program)
{
    char* const words[] = {const_cast<char*>(program), nullptr};
    execve(program, words, nullptr);
    return false;
}

bool computesInThreads()
{
    std::vector<int> numbers;
    std::thread([&] { numbers.assign(1'000'000, 1); }).join();
    return numbers.size() == 1'000'000;
}

bool writes(const std::string& path)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, S_IRUSR | S_IWUSR);
    return file >= 0 && write(file, "x", 1) == 1;
}

// What is outside the wall and what is inside it, one per line.
void attack(const std::string& folder, const std::string& home)
{
    const Vs::Translate::WallParts parts =
        Vs::Translate::raiseWall({{folder + "/model.stp"}, folder + "/result"});
    say(Kind::Warning, std::string("wall:") + (parts.files ? " files" : "") + (parts.calls ? " calls" : ""));
    const std::pair<const char*, std::function<bool()>> deeds[] = {
        {"reads its file", [&] { return reads(folder + "/model.stp"); }},
        {"writes its result", [&] { return writes(folder + "/result"); }},
        {"reads a system library", [] { return reads("/proc/self/exe") || reads("/etc/ld.so.cache"); }},
        {"computes in threads", computesInThreads},
        {"reads the home", [&] { return reads(home + "/secret"); }},
        {"reads a neighbour", [&] { return reads(folder + "/neighbour"); }},
        {"writes a file", [&] { return writes(home + "/secret"); }},
        {"makes a file", [&] { return writes(home + "/new"); }},
        {"writes its file", [&] { return writes(folder + "/model.stp"); }},
        {"removes a file", [&] { return unlink((home + "/secret").c_str()) == 0; }},
        {"opens a connection", [] { return socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
        {"opens a local connection", [] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
        {"signals its parent", [] { return kill(getppid(), 0) == 0; }},
        {"makes a process", forks},
        {"takes back a limit",
         [] {
             const rlimit all{RLIM_INFINITY, RLIM_INFINITY};
             return setrlimit(RLIMIT_FSIZE, &all) == 0;
         }},
        {"runs a program", [] { return runs("/bin/true"); }},
    };
    for (const auto& [deed, tried] : deeds)
        if (tried())
            say(Kind::Warning, deed);
    say(Kind::Done, {});
}

// Becomes a real worker, on a system that offers no Landlock.
void becomeWithoutLandlock(const std::vector<std::string>& arguments)
{
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(landlock_create_ruleset), 0);
    if (seccomp_load(filter) != 0)
        return;
    const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / arguments[1];
    std::vector<std::string> words(arguments.begin() + 1, arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(program.c_str(), pointers.data());
}

// Never as progress, so that only their number shows that something is wrong.
void flood(Kind kind)
{
    for (unsigned number = 0;; ++number)
        say(kind, "number " + std::to_string(number % 2), 0.5);
}

std::string bytesOf(const std::string& hex)
{
    std::string bytes;
    for (size_t i = 0; i + 2 <= hex.size(); i += 2)
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

void behave(const std::vector<std::string>& arguments)
{
    const std::string& how = arguments[0];
    if (how == "closes its pipe") {
        close(kWorkerPipe);
        liveOn();
    } else if (how == "is done and lives on") {
        say(Kind::Done, {});
        liveOn();
    } else if (how == "sleeps") {
        liveOn();
    } else if (how == "floods with progress") {
        flood(Kind::Progress);
    } else if (how == "floods with warnings") {
        flood(Kind::Warning);
    } else if (how == "says") {
        put(bytesOf(arguments[1]));
    } else if (how == "spins") {
        spin();
    } else if (how == "starves") {
        starve(std::stoul(arguments[1]));
    } else if (how == "tells its limits") {
        limit(arguments);
    } else if (how == "needs memory") {
        const bool enough = numberBehind(arguments, "--memory=") >= std::stoull(arguments[1]);
        say(enough ? Kind::Done : Kind::Error, enough ? "" : "memory:");
    } else if (how == "attacks") {
        attack(arguments[1], arguments[2]);
    } else if (how == "lacks Landlock") {
        becomeWithoutLandlock(arguments);
    }
}

} // namespace

int main(int argc, char** argv)
{
    // Whatever becomes of the test, this process ends.
    constexpr unsigned kLongestLife = 120;
    alarm(kLongestLife);
    if (argc > 1)
        behave({argv + 1, argv + argc});
}
