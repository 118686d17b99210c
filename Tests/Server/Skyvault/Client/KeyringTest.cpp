#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/TestServer.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

using namespace TestSupport;

namespace {

const char* const kUnlocked =
    "printf secret | gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1;";
const char* const kLocked = "gnome-keyring-daemon --start --components=secrets >/dev/null 2>&1;";
const char* const kNoBus = "export DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere;";
/// A bus that doesn't start services on request.
const char* const kBareBus =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
    "<policy context=\"default\"><allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
    "<allow own=\"*\"/></policy></busconfig>";

/// A bus that accepts everything and answers nothing, until the session ends.
const char* const kMuteBus =
    "timeout 25 python3 -c 'import os, socket; s = socket.socket(socket.AF_UNIX);"
    " s.bind(os.environ[\"HOME\"] + \"/mute\"); s.listen(9); held = [s.accept() for _ in range(9)]' &"
    " while [ ! -S \"$HOME/mute\" ]; do sleep 0.1; done;"
    " export DBUS_SESSION_BUS_ADDRESS=unix:path=$HOME/mute; \"$0\" 2; kill $!; exit;";

/// Runs the steps as a plain user in a separate session, after the shell's `before`.
ProcessResult runSession(const std::string& before, bool hasServices = true)
{
    const ScratchFolder home;
    boost::filesystem::permissions(home.path(), boost::filesystem::all_all);
    const std::string folder = home.path().string();
    const std::string bare = home.write("bare.conf", kBareBus).string();
    std::vector<std::string> arguments{"env",
                                       "HOME=" + folder,
                                       "XDG_RUNTIME_DIR=" + folder + "/run",
                                       "XDG_DATA_HOME=" + folder + "/data",
                                       "XDG_CONFIG_HOME=" + folder + "/config",
                                       "XDG_CACHE_HOME=" + folder + "/cache",
                                       "DISPLAY=", // Where nobody is asked for the keyring's password.
                                       "WAYLAND_DISPLAY=",
                                       "dbus-run-session"};
    if (!hasServices)
        arguments.push_back("--config-file=" + bare);
    arguments.insert(arguments.end(),
                     {"--", "sh", "-c", "mkdir -m 700 \"$XDG_RUNTIME_DIR\"; " + before + " exec \"$0\"",
                      QUILLET_KEYRING_ONCE});
    return runProcess(QUILLET_TEST_SUPPORT "/as_plain_user.sh", arguments, {.secondsLimit = 30});
}

std::string missing(const std::vector<std::string>& programs)
{
    for (const std::string& program : programs) {
        if (!boost::filesystem::exists("/usr/bin/" + program))
            return program;
    }
    return {};
}

} // namespace

#define REQUIRE_PROGRAMS(...)                                                                                \
    if (const std::string none = missing({__VA_ARGS__}); !none.empty() && serversAreRequired())              \
        FAIL() << "Not installed: " << none;                                                                 \
    else if (!none.empty())                                                                                  \
    GTEST_SKIP() << "NOTICE: not installed: " << none

TEST(KeyringTest, CredentialsComeBackFromARealKeyringUntilTheyAreForgotten)
{
    REQUIRE_PROGRAMS("gnome-keyring-daemon", "dbus-run-session");
    const ProcessResult result = runSession(kUnlocked);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output,
              "before 8 Reading the credentials from the keyring failed: the keyring has none\n"
              "keep 0 \n"
              "other 8 Reading the credentials from the keyring failed: the keyring has none\n"
              "kept 0 \n"
              "änna|tok en\"|again|https://login.example.org/token|quillet\n"
              "forget 0 \n"
              "after 8 Reading the credentials from the keyring failed: the keyring has none\n"
              "forget again 0 \n")
        << result.errors;
}

TEST(KeyringTest, WhereNoKeyringRunsEachStepSaysSoAtOnce)
{
    REQUIRE_PROGRAMS("dbus-run-session");
    for (const ProcessResult& result : {runSession(kNoBus), runSession({}, false)}) {
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        for (const char* step : {"before", "keep", "other", "kept", "forget", "after", "forget again"}) {
            const size_t line = result.output.find(std::string(step) + " 21 ");
            ASSERT_NE(line, std::string::npos) << step << "\n" << result.output << result.errors;
            EXPECT_NE(result.output.find("the desktop's keyring could not be used (", line),
                      std::string::npos)
                << result.output;
        }
        EXPECT_EQ(result.output.find("tok en"), std::string::npos) << result.output;
    }
}

TEST(KeyringTest, AKeyringThatNobodyCanUnlockKeepsNothingAndDoesNotHang)
{
    REQUIRE_PROGRAMS("gnome-keyring-daemon", "dbus-run-session");
    const ProcessResult result = runSession(kLocked);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("\nkeep 21 Keeping the credentials in the keyring failed: the "),
              std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("\nkept 8 "), std::string::npos) << result.output;
}

TEST(KeyringTest, ABusThatNeverAnswersIsWaitedForOnce)
{
    REQUIRE_PROGRAMS("dbus-run-session", "python3");
    const ProcessResult result = runSession(kMuteBus);
    EXPECT_NE(result.output.find("before 21 "), std::string::npos) << result.output << result.errors;
    EXPECT_NE(result.output.find("(no answer within 2 s)\nkeep 21 "), std::string::npos) << result.output;
    for (const char* step : {"keep", "other", "kept", "forget", "after", "forget again"}) {
        const size_t line = result.output.find(std::string("\n") + step + " 21 ");
        ASSERT_NE(line, std::string::npos) << step << "\n" << result.output;
        EXPECT_LT(result.output.find("(it still owes an answer to an earlier request)", line),
                  result.output.find('\n', line + 1))
            << result.output;
    }
}
