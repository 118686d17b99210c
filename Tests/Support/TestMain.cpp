// The main of all programs of tests. The tests run in a child process, with folders of their own and in an
// order that a seed decides. When a test brings the child down, that test is reported and another child runs
// those that remain.

#include "Tests/Support/OwnFolders.h"
#include "Tests/Support/Progress.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using TestSupport::OwnFolders;
using TestSupport::Progress;

/// GoogleTest takes no greater one.
constexpr int kLastSeed = 99999;

constexpr std::array kEndingSignals{SIGINT, SIGTERM, SIGHUP};

pid_t s_child = 0;
volatile std::sig_atomic_t s_endedBy = 0; ///< The signal that somebody sent to end the run, or 0.

int seedOfTheRun()
{
    const char* given = std::getenv("QUILLET_SEED");
    if (!given)
        return static_cast<int>(std::random_device()() % kLastSeed) + 1;
    int seed = 0;
    const char* const end = given + std::strlen(given);
    if (std::from_chars(given, end, seed).ptr != end || seed < 1 || seed > kLastSeed)
        throw std::invalid_argument("QUILLET_SEED must be a number from 1 to " + std::to_string(kLastSeed) +
                                    ", not \"" + given + '"');
    return seed;
}

void handleEndingSignals(void (*handler)(int))
{
    for (const int signal : kEndingSignals)
        std::signal(signal, handler);
}

/// Runs the tests in a child process with these folders and returns the state in which it ended.
int runInChild(const OwnFolders& folders, const std::filesystem::path& progress)
{
    std::cout << std::flush;
    s_child = fork();
    if (s_child < 0)
        throw std::runtime_error(std::string("The tests cannot have a process of their own: ") +
                                 strerror(errno));
    if (s_child == 0) {
        // Nobody else would remove the folders or tell what happened.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        folders.enter();
        TestSupport::noteProgress(progress);
        const int result = RUN_ALL_TESTS();
        TestSupport::noteEnd();
        std::exit(result);
    }
    handleEndingSignals([](int signal) {
        s_endedBy = signal;
        kill(s_child, signal);
    });
    int state = 0;
    while (waitpid(s_child, &state, 0) < 0 && errno == EINTR) {
    }
    handleEndingSignals(SIG_DFL);
    return state;
}

std::string description(const Progress& progress, int state)
{
    std::string place = progress.running;
    if (place.empty())
        place = progress.ended ? "after the last test" : "outside of any test";
    if (WIFSIGNALED(state))
        return place + " (" + strsignal(WTERMSIG(state)) + ')';
    return place + " (exit code " + std::to_string(WEXITSTATUS(state)) + ')';
}

/// Makes the next child run these tests, whatever this one was asked for.
void select(const std::set<std::string>& tests)
{
    std::string filter;
    for (const std::string& test : tests)
        filter += test + ':';
    GTEST_FLAG_SET(filter, filter);
    unsetenv("GTEST_TOTAL_SHARDS");
    unsetenv("GTEST_SHARD_INDEX");
}

int runAll()
{
    std::vector<std::string> crashes;
    int result = 0;
    for (bool more = true; more;) {
        int state = 0;
        Progress progress;
        {
            const OwnFolders folders;
            const std::filesystem::path file = folders.path() / "progress";
            state = runInChild(folders, file);
            progress = TestSupport::readProgress(file);
        }
        if (s_endedBy)
            std::raise(s_endedBy);
        result |= state != 0;
        more = false;
        if (!progress.ended || WIFSIGNALED(state)) {
            result = 1;
            crashes.push_back(description(progress, state));
            std::cout << "[  CRASHED ] " << crashes.back() << std::endl;
            more = progress.begun && !progress.remaining.empty();
            select(progress.remaining);
        }
    }
    if (crashes.size() > 1) {
        std::cout << crashes.size() << " crashes:\n";
        for (const std::string& crash : crashes)
            std::cout << "[  CRASHED ] " << crash << '\n';
    }
    return result;
}

// Libraries ask for the language as they are loaded, before main: where the user has one, the program starts
// again.
void startWithoutLanguage(char** arguments)
{
    constexpr const char* kMark = "QUILLET_TESTS_SPEAK_ENGLISH";
    std::vector<std::string> names;
    for (char** entry = environ; *entry; ++entry)
        if (const std::string_view text(*entry); text.starts_with("LC_") || text.starts_with("LANG"))
            names.emplace_back(text.substr(0, text.find('=')));
    for (const std::string& name : names)
        unsetenv(name.c_str());
    if (!names.empty() && !std::getenv(kMark) && setenv(kMark, "1", 1) == 0)
        execv("/proc/self/exe", arguments);
}

} // namespace

int main(int count, char** arguments)
try {
    startWithoutLanguage(arguments);
    GTEST_FLAG_SET(shuffle, true);
    GTEST_FLAG_SET(random_seed, seedOfTheRun());
    testing::InitGoogleTest(&count, arguments);
    if (GTEST_FLAG_GET(list_tests) || !GTEST_FLAG_GET(internal_run_death_test).empty())
        return RUN_ALL_TESTS();
    std::cout << "QUILLET_SEED=" << GTEST_FLAG_GET(random_seed) << '\n';
    return runAll();
} catch (const std::exception& error) {
    std::cerr << arguments[0] << ": " << error.what() << ".\n";
    return 2;
}
