// What is around a script: where it comes from, what it can import, and its streams.

#include "Tests/Support/Files.h"
#include "Tests/Support/Users.h"
#include "Tests/UI/Application/Scripted.h"

#include <boost/filesystem/operations.hpp>

#include <csignal>
#include <sys/stat.h>

using TestSupport::ProcessResult;
using TestSupport::runQuillet;

namespace {

using ScriptSurroundingsTest = Scripted;

TEST_F(ScriptSurroundingsTest, ScriptsOfTheUserRunAtEachStartAndMayKeepTheProgramOpen)
{
    boost::filesystem::create_directories(folder.path() / "profile/scripts/autorun");
    folder.write(
        "profile/scripts/autorun/b.py",
        "import quillet\nprint('b')\ndef stay():\n    return False\nquillet.on_closing_down(stay)\n");
    folder.write("profile/scripts/autorun/a.py", "print('a')\n1 / 0\n");
    folder.write("profile/scripts/autorun/_helper.py", "print('helper')\n");
    folder.write("profile/scripts/autorun/notes.txt", "print('notes')\n");
    const std::string profile = (folder.path() / "profile").string();
    const auto run = [&](std::vector<std::string> options) {
        for (const char* line : {"VuCommands.ExitApplicationCmd", "Camera.ZoomIn"})
            options.insert(options.end(), {"--command", line});
        options.insert(options.end(), {"--headless", "--profile-dir", profile});
        return runQuillet(options);
    };
    const ProcessResult result = run({});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output,
              "a\nb\n" + profile +
                  "/scripts/autorun/b.py:3: This function keeps the program open.\nZoom in.\n");
    EXPECT_NE(result.errors.find("autorun/a.py:2: ZeroDivisionError"), std::string::npos) << result.errors;
    EXPECT_EQ(run({"--no-autorun"}).output, "");

    // A script that others can modify is reported and not run; nor is any in a folder they can add files to.
    const auto refused = [&](const char* what, unsigned open, unsigned closed) {
        chmod((folder.path() / what).c_str(), open);
        const ProcessResult other = run({});
        chmod((folder.path() / what).c_str(), closed);
        EXPECT_EQ(other.exitCode, 0) << other.errors;
        EXPECT_NE(other.errors.find("autorun/b.py: The script isn't run at the start: "), std::string::npos)
            << other.errors;
        EXPECT_NE(other.errors.find(std::string(what) + " can be written by others"), std::string::npos)
            << other.errors;
        return other.output;
    };
    EXPECT_EQ(refused("profile/scripts/autorun/b.py", 0666, 0644), "a\n");
    EXPECT_EQ(refused("profile/scripts/autorun", 01777, 0755), "");
}

TEST_F(ScriptSurroundingsTest, WithoutAHomeNobodyElsesScriptsRun)
{
    SKIP_UNLESS_ROOT();
    const TestSupport::OpenFolder open;
    const boost::filesystem::path shared = open.path() / "shared";
    const std::string planted = ".local/share/quillet/scripts/autorun";
    ASSERT_TRUE(TestSupport::asUser(0, [&] {
        umask(0);
        return boost::filesystem::create_directory(shared) && chmod(shared.c_str(), 01777) == 0;
    }));
    ASSERT_TRUE(TestSupport::asUser(TestSupport::kAnother, [&] {
        boost::filesystem::create_directories(shared / planted);
        TestSupport::overwrite(shared / planted / "evil.py", "print('evil')\n");
        return boost::filesystem::exists(shared / planted / "evil.py");
    }));
    const std::string user = std::to_string(TestSupport::kSomebody);
    for (const std::string home : {"", "HOME=", "HOME=.", "HOME=relative"}) {
        const ProcessResult result = TestSupport::runProcess(
            "/usr/bin/env",
            {"-i", "TMPDIR=" + shared.string(), home.empty() ? "A=B" : home, "setpriv", "--reuid=" + user,
             "--regid=" + user, "--clear-groups", (TestSupport::runningTree() / "bin/quillet").string(),
             "--headless", "--command", "Camera.ZoomIn"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.output, "Zoom in.\n") << home;
        EXPECT_NE(result.errors.find("no home folder was found"), std::string::npos) << result.errors;
    }
    // Nor does such a run leave anything behind.
    EXPECT_EQ(
        std::distance(boost::filesystem::directory_iterator(shared), boost::filesystem::directory_iterator()),
        1);
}

TEST_F(ScriptSurroundingsTest, WhatAScriptHasPrintedIsThereWhenTheProgramIsKilled)
{
    const ProcessResult result = runQuillet(
        {"--headless", "--script",
         folder.write("killed.py", "import os, Camera\nprint('one\\ntwo')\nos.kill(os.getpid(), 9)\n")
             .string()});
    EXPECT_EQ(result.signal, SIGKILL);
    EXPECT_EQ(result.output, "one\ntwo\n");
}

TEST_F(ScriptSurroundingsTest, TheStandardStreamsAreThoseOfAProgram)
{
    const std::string script =
        folder
            .write("streams.py", "import subprocess, sys\nprint('a')\nprint()\n"
                                 "sys.stdout.buffer.write('gr\xC3\xB6\xC3\x9F'.encode()[:3])\n"
                                 "sys.stdout.buffer.write('gr\xC3\xB6\xC3\x9F'.encode()[3:] + b'\\n')\n"
                                 "subprocess.run(['echo', 'child'], stdout=sys.stdout, check=True)\n"
                                 "print(sys.stdin.read().strip(), sys.stdin.readline() == '')\n")
            .string();
    const ProcessResult result = runQuillet({"--headless", "--script", script}, {.input = "one\ntwo\n"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "a\n\ngr\xC3\xB6\xC3\x9F\nchild\none\ntwo True\n");
    // Lines from there are not the script's.
    const ProcessResult console =
        runQuillet({"--headless", "--script", script, "--console"}, {.input = "Camera.ZoomIn\n"});
    EXPECT_NE(console.output.find("child\n True\nZoom in.\n"), std::string::npos) << console.output;
}

TEST_F(ScriptSurroundingsTest, NothingIsImportedFromWhereTheProgramIsStarted)
{
    boost::filesystem::create_directory(folder.path() / "hostile");
    for (const char* name : {"encodings", "site", "sitecustomize", "usercustomize", "io", "json", "threading",
                             "quillet", "Camera"})
        folder.write(std::string("hostile/") + name + ".py", "import os\nos.write(1, b'hostile')\n");
    const std::string script =
        folder
            .write("script.py",
                   "import json, threading, encodings, quillet, Camera\nprint(quillet.documents())\n")
            .string();
    const std::string hostile = (folder.path() / "hostile").string();
    const ProcessResult result = TestSupport::runProcess(
        "/bin/sh",
        {"-c", "cd " + hostile + " && exec " + (TestSupport::runningTree() / "bin/quillet").string() +
                   " --headless --profile-dir " + (folder.path() / "own").string() + " --script " + script},
        {.input = {},
         .environment = {"PYTHONPATH=" + hostile, "PYTHONHOME=" + hostile,
                         "PYTHONSTARTUP=" + hostile + "/site.py", "PYTHONINSPECT=1"}});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "[]\n");
}

TEST_F(ScriptSurroundingsTest, ScriptsFindWhatTheActiveVirtualEnvironmentHasIfItIsForTheirPython)
{
    const std::string made = (folder.path() / "made of ours").string();
    ASSERT_EQ(TestSupport::runProcess("/usr/bin/python3", {"-m", "venv", "--without-pip", made}).exitCode, 0);
    const boost::filesystem::path libraries = boost::filesystem::path(made) / "lib";
    for (const auto& version : boost::filesystem::directory_iterator(libraries))
        folder.write("made of ours/lib/" + version.path().filename().string() +
                         "/site-packages/only_there.py",
                     "place = 'environment'\n");
    boost::filesystem::create_directories(folder.path() / "other" / "bin");
    folder.write("other/pyvenv.cfg", "home = /opt/bin\nversion = 3.4.10\n");
    folder.write("other/bin/python3", "");
    const std::string script =
        folder
            .write("script.py", "import quillet, sys\ntry:\n    import only_there\n    print(sys.prefix)\n"
                                "except ImportError:\n    print('none')\n")
            .string();
    const auto run = [&](const std::string& environment) {
        return runQuillet({"--headless", "--script", script},
                          {.environment = {"VIRTUAL_ENV=" + environment}});
    };
    const ProcessResult used = run(made);
    EXPECT_EQ(std::pair(used.output, used.errors), std::pair(made + "\n", std::string()));
    EXPECT_EQ(run("").output, "none\n");
    for (const auto& [place, why] :
         {std::pair{"other", "for Python 3.4.10"}, {"in", "not a virtual environment"}}) {
        const ProcessResult left = run((folder.path() / place).string());
        EXPECT_EQ(std::pair(left.output, left.exitCode), std::pair(std::string("none\n"), 0)) << left.errors;
        EXPECT_NE(left.errors.find(why), std::string::npos) << left.errors;
    }
}

} // namespace
