// Windows that are told to end, or lose their display: nothing is lost, and nobody is asked.

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <gtest/gtest.h>

namespace fs = boost::filesystem;

namespace {

class WindowEndTest : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        if (std::system("command -v Xvfb >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "NOTICE: Xvfb is not installed";
    }
    std::string profile() const { return (folder.path() / "profile").string(); }
    TestSupport::ProcessResult run(const std::string& program, std::vector<std::string> arguments) const
    {
        return TestSupport::runProcess(program, arguments, {.environment = {"DBUS_SESSION_BUS_ADDRESS="}});
    }
    static std::string quillet() { return (TestSupport::runningTree() / "bin/quillet").string(); }

    TestSupport::ScratchFolder folder;
};

} // namespace

TEST_P(WindowEndTest, TheLastStepIsKeptAndComesBack)
{
    const std::string file = (folder.path() / "Part.vlra").string();
    const auto script =
        folder.write("end.py", std::string("import Design, os, signal, time\n"
                                           "Design.Box('4', '5', '6')\n") +
                                   GetParam() + "\nfor i in range(400):\n    time.sleep(0.02)\n");
    const TestSupport::ProcessResult ended =
        run(QUILLET_TEST_SUPPORT "/on_display.sh",
            {"1280x1024x24", quillet(), "--profile-dir", profile(), "--command", "Design.New", "--command",
             "Document.SaveAs " + file, "--command", "Design.Box 1 2 3", "--script", script.string()});
    EXPECT_FALSE(ended.timedOut) << ended.output << ended.errors;
    EXPECT_NE(ended.exitCode, 0);
    ASSERT_TRUE(fs::exists(file)) << "it did not even begin: " << ended.errors;
    EXPECT_NE(TestSupport::contentOf(profile() + "/options/RecentDocuments.json").find("Part.vlra"),
              std::string::npos)
        << "what a window saved is listed in the next one";
    const TestSupport::ProcessResult back =
        run(quillet(),
            {"--headless", "--profile-dir", profile(), "--command", "AutoSave.Recovery", "--command",
             "Document.Path", "--command", "Asset.ListDirty", "--command", "Selection.Select Box1 Box2"});
    EXPECT_EQ(back.exitCode, 0) << back.output << back.errors << ended.errors;
    EXPECT_NE(back.output.find(file), std::string::npos) << back.output;
    EXPECT_NE(back.output.find("is dirty"), std::string::npos) << back.output;
}

namespace {

std::string nameOf(const testing::TestParamInfo<const char*>& parameter)
{
    constexpr const char* kNames[] = {"Terminate", "HangUp", "Interrupt", "LostDisplay"};
    return kNames[parameter.index];
}

// The first Ctrl-C only stops the script.
constexpr const char* kInterruptTwice =
    "import subprocess\n"
    "subprocess.Popen(['sh', '-c', 'kill -INT %d; sleep 1; kill -INT %d' % (os.getpid(), os.getpid())])";
constexpr const char* kEndDisplay = "os.kill(int(os.environ['DISPLAY_SERVER']), signal.SIGKILL)";

} // namespace

INSTANTIATE_TEST_SUITE_P(Ends, WindowEndTest,
                         testing::Values("os.kill(os.getpid(), signal.SIGTERM)",
                                         "os.kill(os.getpid(), signal.SIGHUP)", kInterruptTwice, kEndDisplay),
                         nameOf);
