#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/RealData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

using TestSupport::ProcessResult;
using TestSupport::runProcess;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

/// The objects of a list, one per line.
std::vector<QJsonObject> objects(const std::string& output)
{
    std::vector<QJsonObject> result;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(line));
        EXPECT_TRUE(document.isObject()) << line;
        result.push_back(document.object());
    }
    return result;
}

TEST(ProgramTest, HelpAndVersionGoToStandardOutput)
{
    const ProcessResult help = runQuillet({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("--replay"), std::string::npos);
    EXPECT_EQ(help.errors, "");
    const std::string version = runQuillet({"--version"}).output;
    EXPECT_TRUE(std::regex_match(
        version, std::regex(R"(Quillet \d+\.\d+\.\d+ \(([0-9a-f]{12}(-dirty)?|unknown)\)\n)")))
        << version;
}

TEST(ProgramTest, WrongUsageIsTwoAndSaysWhy)
{
    const ProcessResult result = runQuillet({"--no-such-option"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.errors.find("no-such-option"), std::string::npos);
}

TEST(ProgramTest, LinesAnswerOnStandardOutputAndFailOnStandardErrorWithTheirPlace)
{
    const ProcessResult good = runQuillet({"--headless", "--command", "Sleeper.Sleep 0"});
    EXPECT_EQ(good.exitCode, 0);
    EXPECT_EQ(good.output, "Sleep 0 ms.\n");
    const ProcessResult bad = runQuillet({"--headless", "--command", "Camera.ZoomIn", "--command",
                                          "Asset.List", "--command", "Camera.ZoomIn"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_EQ(bad.output, "Zoom in.\n");
    EXPECT_EQ(bad.errors, "--command:2: There is no asset in memory.\n");
}

TEST(ProgramTest, AStartLoadsNothingOfTheNetworkOfDatabasesOrOfTheKeyring)
{
    const ScratchFolder folder;
    const std::string log = (folder.path() / "loaded").string();
    runQuillet({"--headless", "--command", "Sleeper.Sleep 0"},
               {.environment = {"LD_DEBUG=files", "LD_DEBUG_OUTPUT=" + log}});
    std::string loaded; // One file per process.
    for (const auto& file : boost::filesystem::directory_iterator(folder.path()))
        loaded += TestSupport::contentOf(file.path());
    ASSERT_NE(loaded.find("libQt6Core"), std::string::npos);
    for (const char* library : {"libQt6Network", "libQt6Sql", "libqt6keychain", "libcurl", "libssl"})
        EXPECT_EQ(loaded.find(library), std::string::npos) << library;
}

TEST(ProgramTest, KeepGoingRunsTheRestAndStillFails)
{
    const ProcessResult result =
        runQuillet({"--headless", "--keep-going", "--command", "Asset.List", "--command", "Camera.ZoomIn"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "Zoom in.\n");
}

TEST(ProgramTest, WithoutAGraphicsDriverEverythingButPicturesWorks)
{
    const ScratchFolder folder;
    const std::string model =
        folder
            .write("one.stl", "solid one\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 9 0 0\n"
                              "vertex 0 9 0\nendloop\nendfacet\nendsolid one\n")
            .string();
    const boost::filesystem::path copy = folder.path() / "copy.stl", picture = folder.path() / "none.png";
    setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent", 1);
    const ProcessResult result =
        runQuillet({"--headless", "--keep-going", "--command", "Document.Open " + model, "--command",
                    "Commands.Start SaveAsImageCommand Path=" + picture.string() + " Width=64 Height=64",
                    "--command", "Camera.ZoomIn 2", "--command", "Asset.Export " + copy.string()});
    unsetenv("__EGL_VENDOR_LIBRARY_FILENAMES");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors.rfind("--command:2: Pictures cannot be drawn", 0), 0u) << result.errors;
    EXPECT_NE(result.output.find("Zoom in."), std::string::npos);
    EXPECT_TRUE(boost::filesystem::exists(copy));
    EXPECT_FALSE(boost::filesystem::exists(picture));
}

TEST(ProgramTest, AFailedLineOfATranscriptIsNamedWithFileAndNumber)
{
    const ScratchFolder folder;
    const std::string path =
        folder.write("bad.txt", "# comment\n\nCamera.ZoomIn\nNo.Such\nCamera.ZoomOut\n").string();
    const ProcessResult result = runQuillet({"--headless", "--replay", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "Zoom in.\n");
    EXPECT_EQ(result.errors.rfind(path + ":4: ", 0), 0u);
    const ProcessResult missing =
        runQuillet({"--headless", "--replay", (folder.path() / "none.txt").string()});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.errors.find("none.txt"), std::string::npos);
}

TEST(ProgramTest, TheConsoleReadsALineAfterTheOtherWithoutAPrompt)
{
    const ProcessResult good =
        runQuillet({"--headless", "--console"}, {.input = "Camera.ZoomIn\r\n# comment\n\nCamera.ZoomOut"});
    EXPECT_EQ(good.exitCode, 0);
    EXPECT_EQ(good.output, "Zoom in.\nZoom Out.\n");
    const ProcessResult bad =
        runQuillet({"--headless", "--console"}, {.input = "Camera.ZoomIn\nAsset.List\nCamera.ZoomIn\n"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_EQ(bad.output, "Zoom in.\n");
    EXPECT_EQ(bad.errors, "<stdin>:2: There is no asset in memory.\n");
    EXPECT_EQ(runQuillet({"--headless", "--console"}, {.input = ""}).exitCode, 0);
    const ProcessResult filled = runQuillet(
        {"--headless", "--keep-going", "--set", "size=2", "--command=Design.New",
         "--command=Design.Box ${size} ${size} ${size}", "--console"},
        {.input = "# ${nobody}\nBody.CheckVolume box = ${volume:-8} mm^3\nDesign.Box ${nobody} 1 1\n"});
    EXPECT_TRUE(filled.errors.starts_with("<stdin>:3: ")) << filled.errors;
    EXPECT_NE(filled.errors.find("nobody"), std::string::npos);
}

TEST(ProgramTest, ExitEndsTheRunAtOnceAndWell)
{
    for (const char* line : {"VuCommands.ExitApplicationCmd", "VuCommands.CloseWorkspaceCmd"}) {
        const ProcessResult result = runQuillet({"--headless", "--command", line, "--command", "Asset.List"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
    }
}

TEST(ProgramTest, ScriptsRunInTheirPlace)
{
    const ScratchFolder folder;
    const std::string good = folder.write("good.py", "import Camera\nprint(Camera.ZoomIn(1.5))\n").string();
    const std::string bad = folder.write("bad.py", "import Asset\nAsset.List()\n").string();
    const ProcessResult result =
        runQuillet({"--headless", "--command", "Camera.ZoomOut", "--script", good, "--script", bad});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "Zoom Out.\nZoom in.\n");
    EXPECT_NE(result.errors.find("bad.py:2"), std::string::npos);
}

TEST(ProgramTest, WhatFollowsTwoDashesAreTheArgumentsOfScripts)
{
    const ScratchFolder folder;
    const std::string script = folder.write("args.py", "import sys\nprint(sys.argv[1:])\n").string();
    const ProcessResult result =
        runQuillet({"--headless", "--script", script, "--", "größe 1", "--headless", "-"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "['größe 1', '--headless', '-']\n");
    const ProcessResult file = runQuillet({"--headless", "--", "--none.stp"});
    EXPECT_NE(file.errors.find("--none.stp"), std::string::npos) << file.errors;
}

TEST(ProgramTest, ThreadsThatAScriptLeavesEndWithTheProgram)
{
    const ScratchFolder folder;
    const std::string script =
        folder
            .write("threads.py", "import threading, time\n"
                                 "def loop():\n"
                                 "  while True: time.sleep(0.001)\n"
                                 "threading.Thread(target=loop, name='mine').start()\n"
                                 "threading.Thread(target=loop, daemon=True).start()\n")
            .string();
    const ProcessResult result = runQuillet({"--headless", "--script", script, "--command", "Camera.ZoomIn"});
    EXPECT_EQ(result.exitCode, 0) << "signal " << result.signal;
    EXPECT_EQ(result.output, "Zoom in.\n");
    EXPECT_NE(result.errors.find("end with the program: mine."), std::string::npos) << result.errors;
}

TEST(ProgramTest, AFileThatCannotBeOpenedIsOneMessageWithItsName)
{
    const ScratchFolder folder;
    const std::string empty = folder.write("empty.stp", "").string();
    const ProcessResult result = runQuillet({"--headless", empty});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("empty.stp"), std::string::npos);
}

TEST(ProgramTest, WithoutADisplayTheRunIsHeadlessAndSaysSo)
{
    const ProcessResult result =
        runQuillet({"--command", "Camera.ZoomIn"}, {.environment = {"DISPLAY=", "WAYLAND_DISPLAY="}});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "Zoom in.\n");
    EXPECT_NE(result.errors.find("headless"), std::string::npos);
}

TEST(ProgramTest, ADisplayThatIsNotThereIsAMessageAndNoCrash)
{
    const ProcessResult result = runQuillet({}, {.environment = {"DISPLAY=:65432"}});
    EXPECT_EQ(result.exitCode, 2) << "signal " << result.signal;
    EXPECT_NE(result.errors.find(":65432"), std::string::npos) << result.errors;
    EXPECT_NE(result.errors.find("--headless"), std::string::npos) << result.errors;
}

TEST(ProgramTest, CtrlCEndsALoadWithAMessageAndTheRunGoesOnOnlyIfAskedTo)
{
    SKIP_WITHOUT_REAL_DATA();
    const std::string model = (TestSupport::realDataFolder() / "asm_board_video_ap214.step").string();
    const ProcessResult result = runQuillet(
        {"--headless", "--keep-going", "--command", "Document.Open " + model, "--command", "Camera.ZoomIn"},
        {.interruptAfterSeconds = 2.5});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("was cancelled"), std::string::npos) << result.errors;
    EXPECT_EQ(result.output, "Zoom in.\n");
}

TEST(ProgramTest, ListsTellEverythingThatIsRegistered)
{
    std::set<QString> definitions;
    QStringList order;
    for (const QJsonObject& object : objects(runQuillet({"--list-definitions"}).output)) {
        order.push_back(object["id"].toString());
        QStringList keys = object.keys();
        // A command that declares none accepts anything.
        keys.removeAll("arguments");
        EXPECT_EQ(keys, (QStringList{"class", "groups", "hotkey", "icon", "id", "readonly", "reportable",
                                     "scriptable", "title"}));
        EXPECT_TRUE(definitions.insert(object["id"].toString()).second);
        // A class, or a class template.
        EXPECT_TRUE(
            QRegularExpression("^\\w+(<\\w+(, *\\w+)*>)?$").match(object["class"].toString()).hasMatch())
            << object["class"].toString().toStdString();
        if (object["id"] == "ExitApplicationCommand") {
            EXPECT_EQ(object["class"].toString(), "ExitApplicationCmdDef");
            EXPECT_EQ(object["hotkey"].toString(), "ctrl+q");
            EXPECT_EQ(object["icon"].toString(), "Application/Exit");
        }
        if (object["id"] == "SaveAsImageCommand") {
            EXPECT_TRUE(object["arguments"].toArray().contains("Width"));
        }
    }
    EXPECT_TRUE(definitions.count("FitCommand"));
    // Those that the add-in creates besides its members come after these.
    for (const char* added : {"ActiveViewAssetCommand", "CopyToClipboardCommand", "PasteCommand"})
        EXPECT_GT(order.indexOf(added), order.indexOf("NotifyAutoSaveFilesCommand")) << added;
    int wrappers = 0;
    for (const QJsonObject& object : objects(runQuillet({"--list-commands"}).output)) {
        EXPECT_FALSE(object["help"].toString().isEmpty());
        if (!object.contains("definition"))
            continue;
        ++wrappers;
        EXPECT_TRUE(definitions.count(object["definition"].toString()))
            << object["name"].toString().toStdString();
    }
    EXPECT_GT(wrappers, 10);
    int formats = 0;
    for (const QJsonObject& object : objects(runQuillet({"--list-formats"}).output))
        if (object["suffixes"].toArray().contains(".wrl")) {
            EXPECT_TRUE(object["reads"].toBool());
            EXPECT_FALSE(object["writes"].toBool());
            ++formats;
        }
    EXPECT_EQ(formats, 1);
}

TEST(ProgramTest, TheFirstLookRunsToItsEndAndLeavesPictureAndModel)
{
    const ScratchFolder folder;
    std::vector<std::string> models = {""};
    if (!TestSupport::realDataFolder().empty())
        for (const char* name : {"as1-oc-214.stp", "as1.stp"})
            if (boost::filesystem::exists(TestSupport::realDataFolder() / name))
                models.push_back((TestSupport::realDataFolder() / name).string());
    for (const std::string& model : models) {
        const ProcessResult result = runQuillet({"--headless", "--echo", "--set", "model=" + model, "--set",
                                                 "out=" + folder.path().string(), "--replay",
                                                 QUILLET_SOURCE_DIR "/Examples/first-look.txt"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_NE(result.output.find("> Document.CloseAll\n"), std::string::npos);
        for (const char* name : {"first-look.png", "first-look.stl"}) {
            EXPECT_GT(boost::filesystem::file_size(folder.path() / name), 1000u);
            boost::filesystem::remove(folder.path() / name);
        }
    }
}

TEST(ProgramTest, TheSavedDocumentComesBackFromItsFile)
{
    const ScratchFolder folder;
    const ProcessResult result = runQuillet({"--headless", "--echo", "--set", "out=" + folder.path().string(),
                                             "--replay", QUILLET_SOURCE_DIR "/Examples/save-and-reopen.txt"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("Design is clean"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Asset name: Simulation"), std::string::npos) << result.output;
    for (const char* name : {"bracket.vlra", "bracket-2.vlra"})
        EXPECT_TRUE(boost::filesystem::exists(folder.path() / name));
}

TEST(ProgramTest, AFileWhoseNameIsNoUtf8IsOpenedAndSaved)
{
    const ScratchFolder folder;
    const boost::filesystem::path odd = folder.path() / "gr\xf6\xdf"
                                                        "e";
    boost::filesystem::create_directory(odd);
    const std::string profile = (folder.path() / "profile").string();
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--headless", "--profile-dir", profile});
        const ProcessResult result = runQuillet(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result;
    };
    const std::string native = (odd / "a\xff.vlra").string(), step = (odd / "b\xff.step").string();
    run({"--command", "Design.New", "--command", "Design.Box 1 2 3", "--command", "Asset.Export " + step,
         "--command", "Document.SaveAs \"" + native + '"'});
    ASSERT_TRUE(boost::filesystem::exists(native));
    ASSERT_TRUE(boost::filesystem::exists(step));
    for (const char* list : {"RecentDocuments.json", "RecentFiles.json"})
        EXPECT_FALSE(boost::filesystem::exists(folder.path() / "profile/options" / list))
            << "what a script saves doesn't count as the user's document";

    EXPECT_EQ(run({native, "--command", "Asset.Path"}).output.find("Design "), 0u);
    run({step});
    run({"--replay",
         folder.write("lines\xff.txt", "Document.Open " + native + "\nDocument.Open " + step + '\n').string(),
         "--set", "x=" + native});
    run({"--script",
         folder
             .write("script\xff.py", "import os, quillet, sys\n"
                                     "folder = os.path.dirname(sys.argv[1])\n"
                                     "for name in os.listdir(folder):\n"
                                     "    quillet.open_document(os.path.join(folder, name))\n"
                                     "paths = [d.path for d in quillet.documents()]\n"
                                     "assert sys.argv[1] in paths and os.path.exists(sys.argv[1]), paths\n"
                                     "assert __file__.endswith('script\\udcff.py')\n")
             .string(),
         "--", native});
    // A message shows a replacement character, and nothing that isn't UTF-8.
    const ProcessResult missing = runQuillet({"--headless", native + "\xfe"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.errors.find("a\xef\xbf\xbd.vlra\xef\xbf\xbd"), std::string::npos) << missing.errors;
}

TEST(ProgramTest, WhatItKeepsIsForItsUserAlone)
{
    const ScratchFolder folder;
    const std::string profile = (folder.path() / "profile").string(),
                      saved = (folder.path() / "saved.vlra").string();
    const ProcessResult result = runProcess(
        "/bin/sh",
        {"-c", "umask 0; exec " + (TestSupport::runningTree() / "bin/quillet").string() +
                   " --headless --profile-dir " + profile +
                   " --command Design.New --command 'Design.Box 1 2 3' --command 'Document.SaveAs " + saved +
                   "' --command VuCommands.ManagementShellCmd"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const auto permissions = [](const boost::filesystem::path& path) {
        return boost::filesystem::status(path).permissions() & boost::filesystem::perms_mask;
    };
    using boost::filesystem::directory_iterator;
    size_t options = 0;
    for (const auto& entry : {profile, profile + "/options"})
        EXPECT_EQ(permissions(entry), boost::filesystem::owner_all) << entry;
    for (directory_iterator entry(profile + "/options"), end; entry != end; ++entry, ++options)
        EXPECT_EQ(permissions(entry->path()), boost::filesystem::owner_read | boost::filesystem::owner_write)
            << entry->path();
    EXPECT_GE(options, 1u) << "the layout";
    EXPECT_EQ(permissions(saved), 0666) << "what the user saves has what the user wants";
}

TEST(ProgramTest, NumbersAreWrittenInOneWayWhateverTheLocaleIs)
{
    const ScratchFolder folder;
    const std::string lines =
        folder.write("lines.txt", "Design.New\nDesign.Box 1.5 2 3\nScript.Body Box1\n").string();
    std::string first;
    for (const char* locale :
         {"LC_ALL=C", "LC_ALL=xx_YY.UTF-8", "LC_ALL=tr_TR.UTF-8", "LANG=de_DE", "LC_NUMERIC=de_DE.UTF-8"}) {
        const ProcessResult result = runQuillet({"--headless", "--replay", lines},
                                                {.environment = {"LC_ALL=", "LANGUAGE=en", locale}});
        EXPECT_EQ(result.exitCode, 0) << locale << '\n' << result.errors;
        first = first.empty() ? result.output : first;
        EXPECT_EQ(result.output, first) << locale;
    }
    EXPECT_NE(first.find("\"volume\":9"), std::string::npos) << first;
}

} // namespace
