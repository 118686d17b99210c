// The queue of uploads of a program that is killed, or whose disk is full: every save arrives, once.

#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <sstream>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
namespace Web = Corvane::Itemstore::WebServices;
namespace fs = boost::filesystem;

/// Runs of another process, with a separate profile, which are killed.
class KilledQueueTest : public ItemhubTest
{
protected:
    void SetUp() override
    {
        const std::string token = service().token(account(), "writer");
        m_token = m_folder.write("token.json", R"({"address": ")" + service().address() +
                                                   R"(", "customer": "acme", "token": ")" + token + "\"}");
        fs::permissions(m_token, fs::owner_read | fs::owner_write);
        ASSERT_TRUE(hub().signIn(access(token), false));
    }

    TestSupport::ProcessResult run(const std::vector<std::string>& words) const
    {
        std::vector<std::string> all{(m_folder.path() / "profile").string()};
        all.insert(all.end(), words.begin(), words.end());
        TestSupport::ProcessOptions options;
        options.environment = {"QUILLET_ITEMHUB_TOKEN_FILE=" + m_token.string()};
        return TestSupport::runProcess(QUILLET_ITEM_CLIENT, all, options);
    }
    /// The same as a child process that the caller waits for.
    pid_t start(const std::vector<std::string>& words, bool isTraced) const
    {
        std::vector<std::string> all{QUILLET_ITEM_CLIENT, (m_folder.path() / "profile").string()};
        all.insert(all.end(), words.begin(), words.end());
        const pid_t child = fork();
        if (child == 0) {
            setenv("QUILLET_ITEMHUB_TOKEN_FILE", m_token.c_str(), 1);
            if (isTraced)
                ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            std::vector<char*> arguments;
            for (std::string& word : all)
                arguments.push_back(word.data());
            arguments.push_back(nullptr);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        return child;
    }
    /// New items' files, in the profile of those runs.
    std::vector<std::string> newItems(int count) const
    {
        std::istringstream output(run({"new", std::to_string(count)}).output);
        std::vector<std::string> files;
        for (std::string line; std::getline(output, line);)
            files.push_back(line);
        EXPECT_EQ(files.size(), size_t(count));
        return files;
    }
    /// The contents' hashes of the item's one attachment, by its record; two attachments are a failure.
    std::vector<std::string> arrivedOf(const std::string& file) const
    {
        const std::string record = TestSupport::contentOf(Path(file).parent_path() / ".item.json");
        const size_t at = record.find("\"item\":");
        EXPECT_NE(at, std::string::npos) << file;
        const int item = std::atoi(record.c_str() + at + 7);
        std::vector<std::string> hashes;
        const auto attachments = hub().getItemAttachments({}, hub().getItemById(item));
        EXPECT_LE(attachments.size(), 1u);
        for (const auto& attachment : attachments)
            for (const Web::Version& version : hub().getVersions(attachment))
                hashes.push_back(version.sha256);
        return hashes;
    }

    TestSupport::ScratchFolder m_folder;
    Path m_token;
};

TEST_F(KilledQueueTest, AtEachRequestASaveArrivesOnce)
{
    // Each request of two saves, before the service has received it and after it has executed it.
    constexpr int kMostRequests = 40;
    const std::vector<std::string> files = newItems(kMostRequests);
    for (int number = 1; number <= kMostRequests; ++number) {
        const std::string& file = files[size_t(number) - 1];
        service().proxy().forgetRequests();
        std::atomic<pid_t> child = 0;
        std::atomic<int> count = 0;
        service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.target.find("/events") != std::string::npos)
                return std::nullopt;
            if (++count != (number + 1) / 2)
                return std::nullopt;
            while (child == 0)
                usleep(1000);
            kill(child, SIGKILL);
            return number % 2 == 0 ? Fault::loseAnswer() : Fault::reset();
        });
        const std::string first = "first " + std::to_string(number), second = std::string(100'000, 's');
        child = start({"save", file, first, second}, false);
        int state = 0;
        waitpid(child, &state, 0);
        service().proxy().onRequest({});
        const bool wasKilled = WIFSIGNALED(state);
        ASSERT_EQ(run({"wait"}).exitCode, 0) << number;
        const auto arrived = arrivedOf(file);
        // Killed while it signs in, it has saved nothing, and on a busy machine perhaps not yet the second.
        std::vector<std::string> saved;
        if (fs::exists(file))
            saved.push_back(sha256(first));
        if (fs::exists(file) && TestSupport::contentOf(file) == second)
            saved.push_back(sha256(second));
        EXPECT_EQ(arrived, saved) << number;
        if (!wasKilled) {
            EXPECT_GT(number, 16) << "there are more requests than that";
            return;
        }
    }
    FAIL() << "the save has no end";
}

/// What happens to one call of a save.
enum class Fate { Kill, Fail };

/// Whether the stopped child is about to make a call that changes a file.
bool isBeforeChange(pid_t child)
{
    constexpr std::uint64_t kCalls[] = {SYS_write,    SYS_link,  SYS_linkat, SYS_rename,
                                        SYS_renameat, SYS_mkdir, SYS_unlink};
    __ptrace_syscall_info info{};
    if (ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info) < 0 ||
        info.op != PTRACE_SYSCALL_INFO_ENTRY)
        return false;
    if (info.entry.nr == SYS_openat)
        return (info.entry.args[2] & O_CREAT) != 0;
    return std::find(std::begin(kCalls), std::end(kCalls), info.entry.nr) != std::end(kCalls);
}

/// At the stop before a call: skips it. At the stop after it: makes it return that the disk is full.
void skipCall(pid_t child, bool isBefore)
{
#ifdef __x86_64__
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    if (isBefore)
        registers.orig_rax = ~0ULL;
    else
        registers.rax = static_cast<unsigned long long>(-ENOSPC);
    ptrace(PTRACE_SETREGS, child, nullptr, &registers);
#endif
}

/// Follows a child from its first SIGSTOP to the call of that number, counted from 1, of those that change
/// files, and applies the fate to it. False if its second SIGSTOP comes first.
bool reach(pid_t child, int number, Fate fate)
{
    int state = 0, stops = 0, calls = 0;
    bool isReached = false, isSkipping = false;
    while (waitpid(child, &state, 0) == child && WIFSTOPPED(state)) {
        if (WSTOPSIG(state) == SIGSTOP && ++stops == 1)
            ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        if (isSkipping)
            skipCall(child, false);
        isSkipping = false;
        if (stops == 1 && isBeforeChange(child) && ++calls == number) {
            isReached = true;
            if (fate == Fate::Kill)
                kill(child, SIGKILL);
            else
                skipCall(child, isSkipping = true);
        }
        ptrace(stops == 1 ? PTRACE_SYSCALL : PTRACE_CONT, child, nullptr, nullptr);
    }
    return isReached;
}

TEST_F(KilledQueueTest, AtEachCallOfASaveItArrivesOnce)
{
    constexpr int kMostCalls = 40;
    for (const Fate fate : {Fate::Kill, Fate::Fail}) {
        const std::vector<std::string> files = newItems(kMostCalls);
        std::map<std::string, std::string> contents;
        int number = 0;
        bool goesOn = true;
        for (; goesOn && number < kMostCalls; ++number) {
            const std::string& file = files[size_t(number)];
            goesOn =
                reach(start({"queue", file, "content " + std::to_string(number)}, true), number + 1, fate);
            if (fs::exists(file))
                contents[file] = TestSupport::contentOf(file);
        }
        EXPECT_FALSE(goesOn) << "the save has no end";
        EXPECT_GT(number, 5) << "there are more calls than that";
        EXPECT_GT(contents.size(), 3u) << "some of the calls come after the file is there";
        ASSERT_EQ(run({"wait"}).exitCode, 0);
        for (int i = 0; i < number; ++i) {
            const auto found = contents.find(files[size_t(i)]);
            EXPECT_EQ(arrivedOf(files[size_t(i)]), found == contents.end()
                                                       ? std::vector<std::string>()
                                                       : std::vector<std::string>{sha256(found->second)})
                << (fate == Fate::Kill ? "killed at " : "failed at ") << i + 1;
        }
    }
}

} // namespace
