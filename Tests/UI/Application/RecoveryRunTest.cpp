// The program itself: a run that is killed, and the next one, which recovers its work.

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace fs = boost::filesystem;
using TestSupport::ProcessResult;

namespace {

class RecoveryRunTest : public testing::Test
{
protected:
    using Words = std::vector<std::string>;

    /// Runs lines, and then a script that waits until that many files are stored and kills its own process.
    ProcessResult killed(const Words& lines, size_t files) const
    {
        Words arguments = commands(lines);
        const std::string script = "import glob, os, time\n"
                                   "end = time.time() + 60\n"
                                   "while len(glob.glob('" +
                                   profile() + "/recovery/*/*/*.backup')) < " + std::to_string(files) +
                                   " and time.time() < end:\n"
                                   "    Design.Box('9', '9', '9')\n"
                                   "    time.sleep(0.2)\n"
                                   "os.kill(os.getpid(), 9)\n";
        arguments.insert(arguments.end(),
                         {"--script", folder.write("kill.py", "import Design\n" + script).string()});
        return run(arguments);
    }
    ProcessResult run(Words arguments) const
    {
        arguments.insert(arguments.begin(), {"--headless", "--profile-dir", profile()});
        return TestSupport::runProcess((TestSupport::runningTree() / "bin/quillet").string(), arguments,
                                       {.environment = {"DISPLAY=", "WAYLAND_DISPLAY="}});
    }
    ProcessResult runLines(const Words& lines) const { return run(commands(lines)); }
    static Words commands(const Words& lines)
    {
        Words arguments;
        for (const std::string& line : lines)
            arguments.insert(arguments.end(), {"--command", line});
        return arguments;
    }
    std::string profile() const { return (folder.path() / "profile").string(); }
    /// The number of files below the recovery folder, not counting locks.
    size_t filesLeft() const
    {
        size_t count = 0;
        if (fs::exists(profile() + "/recovery"))
            for (fs::recursive_directory_iterator entry(profile() + "/recovery"), end; entry != end; ++entry)
                count += fs::is_regular_file(entry->path()) && entry->path().filename() != "lock";
        return count;
    }

    TestSupport::ScratchFolder folder;
};

} // namespace

TEST_F(RecoveryRunTest, AKilledRunIsBroughtBackAsIfItWereStillOpen)
{
    const std::string file = (folder.path() / "Flange.vlra").string();
    const ProcessResult first =
        killed({"Design.New", "Design.Box 1 2 3", "Document.SaveAs " + file, "Design.Box 4 5 6"}, 1);
    ASSERT_EQ(first.signal, SIGKILL) << first.output << first.errors;

    const ProcessResult told = runLines({"AutoSave.NotifyAutoSavedFiles"});
    EXPECT_EQ(told.output, "Successfully Notify.\n");
    EXPECT_EQ(told.errors, "File Recovery: Flange\n");

    const ProcessResult back =
        runLines({"AutoSave.Recovery", "Document.Path", "Asset.ListDirty", "Document.Save",
                  "AutoSave.Recovery", "AutoSave.NotifyAutoSavedFiles"});
    EXPECT_EQ(back.exitCode, 0) << back.errors;
    EXPECT_NE(back.output.find("Do recovery process of auto-saved files successfully\n\"" + file + "\"\n"),
              std::string::npos)
        << back.output;
    EXPECT_NE(back.output.find("Design is dirty"), std::string::npos) << "no dirty asset: " << back.output;
    EXPECT_TRUE(back.output.ends_with("No recover files.\n")) << back.output;
    EXPECT_EQ(filesLeft(), 0u);
    // Nobody works in the recovery folder.
    for (const fs::directory_entry& options : fs::directory_iterator(profile() + "/options"))
        EXPECT_EQ(TestSupport::contentOf(options.path()).find("recovery"), std::string::npos)
            << options.path();
}

TEST_F(RecoveryRunTest, SeveralDocumentsComeBackAndNoneIsLostUnsaved)
{
    const ProcessResult first = killed({"Document.Create VeloraAssetType", "Design.Box 1 2 3"}, 1);
    ASSERT_EQ(first.signal, SIGKILL) << first.output << first.errors;
    const ProcessResult second = killed({"Document.Create VeloraAssetType", "Design.Box 4 5 6"}, 2);
    ASSERT_EQ(second.signal, SIGKILL) << second.output << second.errors;
    // A run that ends without having saved them leaves them to the next.
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(runLines({"AutoSave.Recovery"}).exitCode, 0);
    const ProcessResult last = runLines({"AutoSave.NotifyAutoSavedFiles"});
    EXPECT_EQ(last.output, "Successfully Notify.\n");
    EXPECT_NE(last.errors.find(", "), std::string::npos) << last.errors;
}

TEST_F(RecoveryRunTest, ARunThatEndsLeavesNothing)
{
    const ProcessResult ended =
        run({"--command", "Design.New", "--command", "Design.Box 1 2 3", "--script",
             folder
                 .write("more.py", "import Design, time\nfor i in range(8):\n    Design.Box('1', '1', '1')\n"
                                   "    time.sleep(0.2)\n")
                 .string()});
    EXPECT_EQ(ended.exitCode, 0) << ended.errors;
    EXPECT_TRUE(fs::exists(profile() + "/recovery")) << "nothing was kept meanwhile";
    EXPECT_TRUE(fs::is_empty(profile() + "/recovery"));
}

TEST_F(RecoveryRunTest, AFastScriptLosesOneStepAtMostAndIsNeverInAStateThatItWasNotIn)
{
    // The first line starts a recovery file, and a second must pass before the next one; meanwhile the lines'
    // changes are in the journal.
    const auto script = [&](const std::string& end) {
        return folder
            .write("fast.py", "import os, Design, Model, VuCommands\n"
                              "def box(size):\n"
                              "    Design.Box(str(size), '1', '1')\n"
                              "    print('digest', Model.Digest(), flush=True)\n"
                              "Design.New()\n"
                              "for i in range(11):\n"
                              "    box(1 + i)\n" +
                                  end + "os.kill(os.getpid(), 9)\n")
            .string();
    };
    const auto digestsOf = [](const std::string& output) {
        std::vector<std::string> digests;
        std::istringstream stream(output);
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with("digest "))
                digests.push_back(line.substr(7));
        return digests;
    };
    const auto recovered = [&] {
        const std::string output = runLines({"AutoSave.Recovery", "Model.Digest"}).output;
        std::vector<std::string> lines;
        std::istringstream stream(output);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        fs::remove_all(profile() + "/recovery");
        return lines.empty() ? std::string() : lines.back();
    };
    const auto killedBy = [&](const std::string& end) {
        const ProcessResult result = run({"--script", script(end)});
        EXPECT_EQ(result.signal, SIGKILL) << result.output << result.errors;
        return digestsOf(result.output);
    };
    std::vector<std::string> digests = killedBy({});
    ASSERT_EQ(digests.size(), 11u);
    const std::string found = recovered();
    EXPECT_TRUE(found == digests.back() || found == *(digests.rbegin() + 1)) << found;

    // No line redoes what was undone by hand.
    digests = killedBy("VuCommands.UndoCmd()\nbox(20)\n");
    EXPECT_NE(std::find(digests.begin(), digests.end(), recovered()), digests.end());

    // A truncated journal, and one with a step that differs from the original.
    for (const bool cut : {true, false}) {
        digests = killedBy({});
        for (fs::recursive_directory_iterator entry(profile() + "/recovery"), end; entry != end; ++entry)
            if (entry->path().filename().string().starts_with("steps-")) {
                std::string text = TestSupport::contentOf(entry->path());
                if (cut)
                    text.resize(text.size() - 20);
                else
                    text.replace(text.find("Design.Box 8 1 1"), 16, "Design.Box 9 1 1");
                TestSupport::overwrite(entry->path().string(), text);
            }
        EXPECT_EQ(recovered(), cut ? *(digests.rbegin() + 1) : *(digests.rbegin() + 4));
    }
}

TEST_F(RecoveryRunTest, AFullDiskCostsNothingThatIsThereAndIsToldOnce)
{
    const fs::path disk = folder.path() / "disk";
    fs::create_directory(disk);
    const auto script = folder.write("full.py", R"(
import os, sys, time
import Design, Document, Model
os.chdir(sys.argv[1])
Design.New()
Design.Box('1', '2', '3')
Document.SaveAs('a.vlra')
saved = open('a.vlra', 'rb').read()
with open('fill', 'wb', buffering=0) as fill:
    try:
        while True:
            fill.write(bytes(4096))
    except OSError:
        pass
for i in range(4):
    Design.Box('4', '5', '6')
    time.sleep(0.2)
state = Model.Digest()
for path in 'a.vlra', 'b.vlra':
    try:
        Document.SaveAs(path)
    except Exception as error:
        print('refused:', error)
print('the same:', saved == open('a.vlra', 'rb').read())
print('documents:', [name for name in os.listdir() if name.endswith('vlra')])
os.remove('fill')
Document.SaveAs('b.vlra')
print('as it was:', state == Model.Digest())
)");
    // A small disk of its own, invisible to others.
    const auto onSmallDisk = [&](const Words& command) {
        Words words{"--mount", "sh", "-c", "mount -t tmpfs -o size=600k none \"$0\" && exec \"$@\"",
                    disk.string()};
        words.insert(words.end(), command.begin(), command.end());
        return TestSupport::runProcess("/usr/bin/unshare", words,
                                       {.environment = {"DISPLAY=", "WAYLAND_DISPLAY="}});
    };
    if (onSmallDisk({"true"}).exitCode != 0)
        GTEST_SKIP() << "NOTICE: nothing can be mounted here";
    const ProcessResult full =
        onSmallDisk({(TestSupport::runningTree() / "bin/quillet").string(), "--headless", "--profile-dir",
                     (disk / "profile").string(), "--script", script.string(), "--", disk.string()});
    EXPECT_EQ(full.exitCode, 0) << full.errors;
    EXPECT_EQ(full.output, "refused: \"" + (disk / "a.vlra").string() +
                               "\" can't be saved: No space left on device.\n" + "refused: \"" +
                               (disk / "b.vlra").string() + "\" can't be saved: No space left on device.\n" +
                               "the same: True\ndocuments: ['a.vlra']\nas it was: True\n");
    const size_t told = full.errors.find("haven't been kept for recovery since");
    EXPECT_NE(told, std::string::npos) << full.errors;
    EXPECT_EQ(full.errors.find("haven't been kept for recovery since", told + 1), std::string::npos)
        << full.errors;
}
