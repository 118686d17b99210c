#include "Server/Base/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

struct Pipe
{
    Pipe() { EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0); }
    ~Pipe()
    {
        closeWriting();
        close(ends[0]);
    }
    void closeWriting()
    {
        if (ends[1] >= 0)
            close(std::exchange(ends[1], -1));
    }
    /// Everything written until all writers are closed.
    std::string rest()
    {
        closeWriting();
        std::string text;
        char piece[4096];
        for (ssize_t count = 0; (count = read(ends[0], piece, sizeof piece)) > 0;)
            text.append(piece, size_t(count));
        return text;
    }
    int ends[2];
};

Vs::ChildSetup shell(const char* commands)
{
    return {.program = "sh", .arguments = {"-c", commands}};
}

TEST(ChildProcess, GetsItsDescriptorsInTheNumbersThatItKnowsAndNoOthers)
{
    Pipe first, second, secret;
    Vs::ChildSetup setup = shell("echo one >&\"$1\"; echo two >&\"$2\"; ls /proc/$$/fd | tr '\\n' ' '");
    // Each gets the number that the other one has here.
    const int one = first.ends[1], two = second.ends[1];
    setup.arguments.insert(setup.arguments.end(), {"sh", std::to_string(two), std::to_string(one)});
    setup.descriptors = {{one, two}, {two, one}, {one, 1}};
    ASSERT_LT(secret.ends[0], 100);
    ASSERT_EQ(fcntl(secret.ends[0], F_SETFD, 0), 0); // A descriptor that somebody forgot to close.
    ASSERT_EQ(fcntl(secret.ends[0], F_DUPFD, 100), 100);
    Vs::ChildProcess child;
    ASSERT_EQ(child.start(std::move(setup)), 0);
    const std::string text = first.rest();
    EXPECT_EQ(text.substr(0, 4), "one\n");
    EXPECT_EQ(second.rest(), "two\n");
    EXPECT_EQ(text.find("100"), text.npos) << text;
    EXPECT_EQ(child.collect(), 0);
    close(100);
}

TEST(ChildProcess, WorksInItsFolderWithItsEnvironmentAndNoBlockedSignal)
{
    Pipe output;
    Vs::ChildSetup setup = shell("pwd; echo \"$WORD$HOME\"; kill -TERM $$; echo survived");
    setup.folder = "/usr";
    setup.environment = {"WORD=told", "PATH=/usr/bin:/bin"};
    setup.descriptors = {{output.ends[1], 1}};
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    Vs::ChildProcess child;
    EXPECT_EQ(child.start(std::move(setup)), 0);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(output.rest(), "/usr\ntold\n");
    const std::optional<int> state = child.collect();
    ASSERT_TRUE(state && WIFSIGNALED(*state));
    EXPECT_EQ(WTERMSIG(*state), SIGTERM);
}

TEST(ChildProcess, IsRefusedWithACauseAndLeavesNothing)
{
    Vs::ChildProcess child;
    EXPECT_EQ(child.start({.program = "/nowhere/program"}), ENOENT);
    EXPECT_EQ(child.start({.program = "/etc/passwd"}), EACCES);
    EXPECT_EQ(child.start({.program = "true", .arguments = {std::string("a\0b", 3)}}), EINVAL);
    EXPECT_EQ(child.start({.program = "true", .folder = "/nowhere"}), ENOENT);
    EXPECT_EQ(child.start({.program = "true", .descriptors = {{-1, 3}}}), EBADF);
    EXPECT_FALSE(child.exists());
    ASSERT_EQ(child.start({.program = "true"}), 0);
    EXPECT_TRUE(child.endsWithin(1min));
    EXPECT_TRUE(child.exists());
    EXPECT_EQ(child.collect(), 0);
}

TEST(ChildProcess, GoesWithAllThatItStarted)
{
    Pipe output;
    {
        Vs::ChildSetup setup = shell("sleep 1000 & echo ready; wait");
        setup.descriptors = {{output.ends[1], 1}};
        Vs::ChildProcess child;
        ASSERT_EQ(child.start(std::move(setup)), 0);
        char letter = 0;
        ASSERT_EQ(read(output.ends[0], &letter, 1), 1);
        EXPECT_FALSE(child.endsWithin(0ms));
    }
    // The read end reports no end of file while any part of the child lives.
    EXPECT_EQ(output.rest(), "eady\n");
}

} // namespace
