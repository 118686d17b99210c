#include "Tests/Support/Process.h"
#include "Tests/Support/Users.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace fs = boost::filesystem;
using TestSupport::ProcessOptions;
using TestSupport::ProcessResult;
using TestSupport::runProcess;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

size_t lines(const std::string& text)
{
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// A copy of the runtime tree whose files are links to the real ones until they are replaced.
class TreeCopy
{
public:
    TreeCopy() : m_root(m_folder.path() / "root") { link(TestSupport::runningTree(), m_root); }

    void replace(const fs::path& file, const std::string& content)
    {
        fs::remove(m_root / file);
        std::ofstream((m_root / file).c_str(), std::ios::binary) << content;
    }
    void remove(const fs::path& file) { fs::remove(m_root / file); }
    std::string read(const fs::path& file) const
    {
        std::ifstream stream((m_root / file).c_str(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    ProcessResult run(const std::vector<std::string>& arguments) const
    {
        return runQuillet(arguments, {.environment = {"QUILLET_ROOT=" + m_root.string()}});
    }

private:
    static void link(const fs::path& from, const fs::path& to)
    {
        fs::create_directories(to);
        for (fs::directory_iterator entry(from), end; entry != end; ++entry) {
            const fs::path target = to / entry->path().filename();
            if (fs::is_directory(entry->path()))
                link(entry->path(), target);
            else
                fs::create_symlink(entry->path(), target);
        }
    }

    ScratchFolder m_folder;
    fs::path m_root;
};

const fs::path kManifest = "UI/Design/Configuration/VuDesign10.xml";

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
    for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
        text.replace(at, what.size(), with);
    return text;
}

TEST(BadInputTest, EachLineThatCannotRunIsOneMessageWithItsCause)
{
    const ScratchFolder folder;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"Camera.Dump \"x", "not closed"},
        {"Camera.Dump " + std::string("\"") + std::string(1000000, 'x'), "not closed"},
        {std::string(1000000, 'x'), "is not a command"},
        {"NoArea.Name", "\"NoArea\""},
        {"Camera.NoName", "\"Camera.NoName\""},
        {"Camera.Set a b", "parameter 1"},
        {"Camera.ZoomIn x", "\"x\""},
        {"Sleeper.Sleep x", "parameter 1"},
        {"Commands.Start NoSuchCommand", "\"NoSuchCommand\""},
        {"Commands.Start BoxCommand Foo", "Foo"},
        {"Commands.Start OpenDocumentCommand", "no file name"},
        {"Commands.Start VeloraOpenDocumentCommand", "no file name"},
        {"Commands.Start SaveAsImageCommand", "no file name"},
        {"Commands.Start ExportCommand", "no active asset"},
        {"Commands.Commit", "No command is running"},
    };
    std::string transcript;
    for (const auto& [line, cause] : cases)
        transcript += line + "\n";
    const std::string path = folder.write("bad.txt", transcript).string();
    const ProcessResult result = runQuillet({"--headless", "--keep-going", "--replay", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_LT(result.errors.size(), 10000u);
    std::istringstream errors(result.errors);
    for (size_t i = 0; i < cases.size(); ++i) {
        std::string message;
        std::getline(errors, message);
        EXPECT_EQ(message.rfind(path + ':' + std::to_string(i + 1) + ": ", 0), 0u) << message;
        EXPECT_NE(message.find(cases[i].second), std::string::npos) << message;
    }
    EXPECT_EQ(errors.peek(), EOF);
}

TEST(BadInputTest, BinaryGarbageFailsLineByLineAndDoesNotSteerTheTerminal)
{
    std::string garbage;
    for (int i = 0; i < 20000; ++i)
        garbage += static_cast<char>(i * 7919 >> 3);
    garbage += "\n\x1b]0;title\x07 \xc2\x9b\n";
    const ScratchFolder folder;
    const std::string path = folder.write("garbage.txt", garbage + "Camera.ZoomIn\n").string();
    const ProcessResult replayed = runQuillet({"--headless", "--keep-going", "--replay", path});
    const ProcessResult typed =
        runQuillet({"--headless", "--keep-going", "--console"}, {.input = garbage + "Camera.ZoomIn\n"});
    for (const ProcessResult* result : {&replayed, &typed}) {
        EXPECT_EQ(result->exitCode, 1);
        EXPECT_NE(result->output.find("Zoom in.\n"), std::string::npos);
        EXPECT_EQ(result->errors.find_first_of("\x1b\x07\r\x7f"), std::string::npos);
        EXPECT_EQ(result->errors.find("\xc2\x9b"), std::string::npos);
    }
}

TEST(BadInputTest, NamesInTheFirstMessagesAndInTestRunsDoNotSteerTheTerminal)
{
    const std::string evil = "x\x1b]0;title\x07\xc2\x9b[31m";
    const ScratchFolder folder;
    folder.write(evil, "no folder");
    folder.write(evil + ".txt", "No.Such line\n");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--no-such-" + evil},
          {"--headless", "--profile-dir", (folder.path() / evil).string()},
          {"--test", evil},
          {"--test", folder.path().string()},
          {"--headless", evil + ".step"}}) {
        const ProcessResult result =
            runProcess((TestSupport::runningTree() / "bin/quillet").string(), arguments);
        EXPECT_NE(result.exitCode, 0);
        for (const std::string* text : {&result.output, &result.errors}) {
            EXPECT_EQ(text->find_first_of("\x1b\x07"), std::string::npos) << *text;
            EXPECT_EQ(text->find("\xc2\x9b"), std::string::npos) << *text;
        }
        EXPECT_NE((result.output + result.errors).find("]0;title"), std::string::npos);
    }
}

TEST(BadInputTest, TranscriptsAndScriptsThatAreNoFilesAreNamed)
{
    const ScratchFolder folder;
    const std::string missing = (folder.path() / "none").string();
    for (const char* option : {"--replay", "--script"})
        for (const std::string& path : {missing, folder.path().string()}) {
            const ProcessResult result = runQuillet({"--headless", option, path});
            EXPECT_EQ(result.exitCode, 1);
            EXPECT_EQ(lines(result.errors), 1u) << result.errors;
            EXPECT_NE(result.errors.find(path), std::string::npos);
        }
}

TEST(BadInputTest, AScriptThatFailsIsToldWithItsLineAndOneThatNeverEndsStopsAtCtrlC)
{
    const ScratchFolder folder;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"x = 1\ndef f(:\n", ":2: SyntaxError"},
        {"x = 1\n\nraise ValueError('bad thing')\n", ":3: ValueError: bad thing"},
        {std::string("\0\x01\xff", 3), "binary"},
        {"while True:\n    pass\n", "cancelled"},
    };
    for (const auto& [script, cause] : cases) {
        const std::string path = folder.write("script.py", script).string();
        const bool endless = &cases.back().first == &script;
        const ProcessResult result =
            runQuillet({"--headless", "--keep-going", "--script", path, "--command", "Camera.ZoomIn"},
                       {.interruptAfterSeconds = endless ? 2.0 : 0.0});
        EXPECT_EQ(result.exitCode, 1);
        // An exception has its traceback above it.
        const size_t last = result.errors.rfind('\n', result.errors.size() - 2) + 1;
        EXPECT_EQ(result.errors.rfind(path, last), last) << result.errors;
        EXPECT_NE(result.errors.find(cause, last), std::string::npos) << result.errors;
        EXPECT_EQ(result.output, "Zoom in.\n");
    }
}

TEST(BadInputTest, AnAddInThatCannotBeLoadedIsOneMessageAndTheRestRuns)
{
    TreeCopy tree;
    const std::string sound = tree.read(kManifest);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"<AddIn", "VuDesign10.xml:"},
        {"<other/>", "other"},
        {replaced(sound, "VuDesign10", "VuNothing10"), "libVuNothing10.so"},
        {replaced(sound, "VuDesign10", "VsScene10"), "GetIAddIn"},
    };
    const auto check = [&](const std::string& cause) {
        const ProcessResult result = tree.run({"--headless", "--command", "Camera.ZoomIn"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "Zoom in.\n");
        EXPECT_EQ(lines(result.errors), 1u) << result.errors;
        EXPECT_NE(result.errors.find(cause), std::string::npos) << result.errors;
    };
    for (const auto& [manifest, cause] : cases) {
        tree.replace(kManifest, manifest);
        check(cause);
    }
    tree.remove(kManifest);
    check("manifest of the add-in is missing");
}

TEST(BadInputTest, BrokenToolbarAndHUDFilesAreToldAndTheCommandsWork)
{
    TreeCopy tree;
    const fs::path resources = "Localization/en/UI/Commands/Resources";
    tree.replace(resources / "Toolbar/Toolbars.xml", "<toolbars><toolbar id=\"A\">");
    tree.replace(resources / "HUD/HUD.xml", "no xml");
    const ProcessResult result = tree.run({"--headless", "--command", "Camera.ZoomIn"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "Zoom in.\n");
    EXPECT_EQ(lines(result.errors), 2u) << result.errors;
    EXPECT_NE(result.errors.find("Toolbars.xml:1"), std::string::npos);
    EXPECT_NE(result.errors.find("HUD.xml:1"), std::string::npos);
}

TEST(BadInputTest, AProfileThatCannotBeUsedIsWrongUsageAndOneThatCannotBeWrittenIsOnlyTold)
{
    const ScratchFolder folder;
    const std::string file = folder.write("file", "").string();
    const ProcessResult wrong =
        runQuillet({"--profile-dir", file, "--headless", "--command", "Camera.ZoomIn"});
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_NE(wrong.errors.find("not a folder"), std::string::npos);

    // Nothing can be stored in a folder whose subfolders are files, but models can be created and lines run.
    fs::create_directories(folder.path() / "closed");
    folder.write("closed/options", "");
    folder.write("closed/cache", "");
    const std::string closed = (folder.path() / "closed").string();
    const std::string model =
        folder
            .write("sample.txt", "Design.New\nDesign.Box 1 2 3\nAsset.Export " +
                                     (folder.path() / "m.step").string() + "\nDocument.Open " +
                                     (folder.path() / "m.step").string() + "\n")
            .string();
    const ProcessResult run = runQuillet({"--profile-dir", closed, "--headless", "--replay", model});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_NE(run.errors.find("options"), std::string::npos);
    EXPECT_NE(run.errors.find("cache"), std::string::npos);
    const ProcessResult console =
        runQuillet({"--profile-dir", closed, "--headless", "--console"}, {.input = "Camera.ZoomIn\n"});
    EXPECT_EQ(console.exitCode, 0) << console.errors;
}

TEST(BadInputTest, FoldersThatAreGoneOrMayOnlyBeReadAreNoObstacle)
{
    const ScratchFolder folder;
    const std::string program = (TestSupport::runningTree() / "bin/quillet").string();
    const auto run = [&](const std::string& before, const std::string& profile) {
        return runProcess("/bin/sh",
                          {"-c", before + "exec " + program + " --headless --profile-dir " + profile +
                                     " --command Design.New --command 'Design.Box 1 2 3'"});
    };
    fs::create_directory(folder.path() / "gone");
    const ProcessResult gone = run("cd " + (folder.path() / "gone").string() + " && rmdir ../gone && ",
                                   (folder.path() / "profile").string());
    EXPECT_EQ(gone.exitCode, 0) << gone.errors;
    SKIP_UNLESS_ROOT();
    const TestSupport::OpenFolder open;
    fs::create_directory(open.path() / "roots");
    const std::string user = std::to_string(TestSupport::kSomebody);
    const ProcessResult readOnly = runProcess(
        "/usr/bin/setpriv", {"--reuid=" + user, "--regid=" + user, "--clear-groups", program, "--headless",
                             "--profile-dir", (open.path() / "roots").string(), "--command", "Design.New",
                             "--command", "Design.Box 1 2 3", "--command", "VuCommands.ManagementShellCmd"});
    EXPECT_EQ(readOnly.exitCode, 0) << readOnly.errors;
    EXPECT_NE(readOnly.errors.find("roots/options"), std::string::npos) << readOnly.errors;
    EXPECT_TRUE(fs::is_empty(open.path() / "roots"));
}

TEST(BadInputTest, NumbersThatAreTooLargeOrNoneAreOneMessageEach)
{
    const ScratchFolder folder;
    std::string text = "Design.New\n";
    for (const std::string number :
         {"1e400", "1e308", "-1", "0", "nan", "inf", "1e-400", "0x10", "1,5", "--1", "\u0661"})
        text += "Design.Box " + number + " 1 1\nDesign.Sphere " + number + "\nCamera.ZoomIn " + number + '\n';
    for (const char digit : {'9', '0', '(', '-'})
        text += "Design.Box " + std::string(500000, digit) + " 1 1\n";
    const ProcessResult result =
        runQuillet({"--headless", "--keep-going", "--replay", folder.write("lines.txt", text).string(),
                    "--command", "Camera.ZoomIn"});
    EXPECT_EQ(result.exitCode, 1) << "signal " << result.signal;
    EXPECT_EQ(result.output, "Zoom in.\n");
    EXPECT_EQ(lines(result.errors), lines(text) - 1) << result.errors;
    EXPECT_LT(result.errors.size(), 10000u);
}

TEST(BadInputTest, AnswersThatCannotBeWrittenAreNoSuccess)
{
    const std::string program = (TestSupport::runningTree() / "bin/quillet").string();
    for (const char* arguments : {"--list-commands", "--headless --command Camera.ZoomIn"}) {
        const ProcessResult result = runProcess("/bin/sh", {"-c", program + ' ' + arguments + " >/dev/full"});
        EXPECT_EQ(result.exitCode, 1) << arguments;
        EXPECT_NE(result.errors.find("standard output"), std::string::npos) << result.errors;
    }
    const ProcessResult folder = runProcess("/bin/sh", {"-c", program + " --headless --console </"});
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_NE(folder.errors.find("<stdin>: "), std::string::npos);
}

TEST(BadInputTest, ListsHelpAndVersionNeedNeitherDisplayNorHome)
{
    const std::string program = (TestSupport::runningTree() / "bin/quillet").string();
    for (const char* option : {"--list-commands", "--list-definitions", "--help", "--version"}) {
        const ProcessResult result = runProcess("/usr/bin/env", {"-i", "HOME=/nonexistent", program, option});
        EXPECT_EQ(result.exitCode, 0) << option;
        EXPECT_EQ(result.errors, "") << option;
        EXPECT_GT(result.output.size(), 5u) << option;
    }
}

} // namespace
