#include "Tests/Support/Files.h"
#include "Tests/UI/Application/Scripted.h"

#include <boost/filesystem/operations.hpp>

using TestSupport::ProcessResult;
using TestSupport::runQuillet;

namespace {

using ScriptingTest = Scripted;

TEST_F(ScriptingTest, APythonTranscriptGoesOnAfterAStatementThatFailedIfThatIsWanted)
{
    const std::string path =
        folder
            .write("bad.py", "# Transcript\nimport Design, Camera\nDesign.Box('a')\n1 +* 2\n"
                             "for i in range(2):\n    print(i)\nCamera.Nothing()\n")
            .string();
    const ProcessResult stopped = runQuillet({"--headless", "--replay", path});
    EXPECT_EQ(stopped.exitCode, 1);
    EXPECT_EQ(stopped.output, "");
    const ProcessResult result = runQuillet({"--headless", "--keep-going", "--echo", "--replay", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output,
              "> import Design, Camera\n> Design.Box('a')\n> 1 +* 2\n> for i in range(2):\n    print(i)\n"
              "0\n1\n> Camera.Nothing()\n");
    for (const char* line : {":3: quillet.CommandError: ", ":4: SyntaxError: ", ":7: AttributeError: "}) {
        const size_t found = result.errors.find(path + line);
        EXPECT_NE(found, std::string::npos) << result.errors;
        EXPECT_EQ(result.errors.find(path + line, found + 1), std::string::npos) << "told twice";
    }
    const ProcessResult lines =
        runQuillet({"--headless", "--keep-going", "--replay",
                    folder
                        .write("lines.py",
                               "# Transcript\nfrom __future__ import annotations\nx = 1 + \\\n2\nprint(x)\n\n"
                               "def f(a: Missing):\n    return [\n        a / 0 for a in range(2)]\n"
                               "(lambda: None)() or [1 / 0 for i in range(2)]\n(lambda:\n  1 / 0)()\nf(1)\n")
                        .string()});
    EXPECT_EQ(lines.output, "3\n");
    for (const char* line : {":10: ZeroDivisionError", ":12: ZeroDivisionError", ":9: ZeroDivisionError"})
        EXPECT_NE(lines.errors.find("lines.py" + std::string(line)), std::string::npos)
            << line << lines.errors;
    EXPECT_EQ(lines.errors.find("NameError"), std::string::npos) << lines.errors;
    EXPECT_EQ(lines.errors.find("SyntaxError"), std::string::npos) << lines.errors;
    const ProcessResult left =
        runQuillet({"--headless", "--keep-going", "--replay",
                    folder.write("left.py", "import sys\nprint(1)\nsys.exit(3)\nprint(2)\n").string()});
    EXPECT_EQ(left.exitCode, 1);
    EXPECT_EQ(left.output, "1\n");
}

TEST_F(ScriptingTest, ATransactionThatIsLeftOpenEndsWithTheProgram)
{
    for (const char* line :
         {"Script.BeginTransaction x", "Script.CommitTransaction", "Script.AbortTransaction"}) {
        const ProcessResult result =
            runQuillet({"--headless", "--keep-going", "--command", "Design.New", "--command", line});
        EXPECT_EQ(result.signal, 0) << line << '\n' << result.errors;
    }
}

TEST_F(ScriptingTest, WhatARunLeavesOpenIsTakenBackAndNamed)
{
    const std::string begin = "Design.Box 1 1 1\nScript.BeginTransaction \"My step\"\nDesign.Box 2 2 2\n";
    const std::string script = folder
                                   .write("left.py", "import quillet\nfor line in open('" +
                                                         folder.write("left.txt", begin).string() +
                                                         "'):\n    quillet.run(line.strip())\n")
                                   .string();
    const std::string saved = (folder.path() / "saved.vlra").string();
    for (const auto& [option, file] :
         {std::pair{"--script", script}, {"--replay", (folder.path() / "left.txt").string()}}) {
        const ProcessResult result =
            runQuillet({"--headless", "--keep-going", "--command", "Design.New", option, file, "--command",
                        "Document.SaveAs " + saved, "--command", "Script.Component", "--command",
                        "VuCommands.UndoCmd", "--command", "Script.Component"});
        EXPECT_EQ(result.exitCode, 1) << result.output;
        EXPECT_NE(result.errors.find(file + ": The transaction \"My step\" was still open at the end."),
                  std::string::npos)
            << result.errors;
        EXPECT_NE(result.output.find(R"("children":["Box1:1"])"), std::string::npos) << result.output;
        EXPECT_NE(result.output.find(R"("children":[])"), std::string::npos) << "nothing can be undone";
    }
}

TEST_F(ScriptingTest, AFailedScriptFailsTheLineThatRunsIt)
{
    const std::string bad = folder.write("bad.py", "import sys\nprint(sys.argv[1:])\n1 / 0\n").string();
    folder.write("good.py", "import sys\nresult = ' '.join(sys.argv[1:])\n");
    for (const std::string line : {"VuCommands.RunScriptCmd bad.py", "Script.Run bad.py \"a b\" c"}) {
        const std::string transcript =
            folder.write("line.txt", "# first\n" + line + "\nCamera.ZoomIn\n").string();
        const ProcessResult result = runQuillet({"--headless", "--replay", transcript});
        EXPECT_EQ(result.exitCode, 1) << line;
        EXPECT_NE(result.errors.find(transcript + ":2: "), std::string::npos) << result.errors;
        EXPECT_NE(result.errors.find(bad + ":3: ZeroDivisionError"), std::string::npos) << result.errors;
        EXPECT_EQ(result.output.find("Zoom in."), std::string::npos);
    }
    holds(R"(
import quillet, sys, VuCommands
assert quillet.run('Script.Run ' + sys.argv[1] + '/good.py "a b" c') == 'a b c'
for run in (lambda: VuCommands.RunScriptCmd(sys.argv[1] + '/bad.py'),
            lambda: quillet.run('Script.Run ' + sys.argv[1] + '/none.py')):
    try:
        run()
        assert False
    except quillet.CommandError as error:
        assert sys.argv[1] in str(error)
)",
          {folder.path().string()});
    const std::string leaves = folder.write("leaves.py", "import sys\nsys.exit(3)\n").string();
    EXPECT_EQ(runQuillet({"--headless", "--script", leaves}).exitCode, 3);
    EXPECT_EQ(runQuillet({"--headless", "--script", bad}).exitCode, 1);
}

TEST_F(ScriptingTest, ParametersBelongToTheRun)
{
    const std::string inner =
        "Sleeper.Sleep ${wait}\nTranscripting.Replay innermost.py more=\"a b\" wait=0\n";
    folder.write("inner.txt", inner);
    folder.write("innermost.py", "# Transcript\nimport quillet\nprint(dict(quillet.parameters))\n");
    const std::string outer =
        folder
            .write("outer.txt", "# ${nobody}\nTranscripting.Replay inner.txt\nSleeper.Sleep ${none:-2}\n"
                                "Document.SaveAs ${outt}/x.vlra\n")
            .string();
    const ProcessResult result =
        runQuillet({"--headless", "--set", "wait=1", "--set", "out=/o", "--replay", outer});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output.find("{'more': 'a b', 'out': '/o', 'wait': '0'}"), std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("Sleep 2 ms."), std::string::npos) << result.output;
    EXPECT_NE(result.errors.find(outer + ":4: There is no parameter \"outt\""), std::string::npos)
        << result.errors;
    holds(R"(
import quillet
assert 'out' in quillet.parameters and quillet.parameters.get('none') is None
assert 'wait' not in quillet.parameters
)");
}

TEST_F(ScriptingTest, AnswersThatDoNotFitFailTheirLines)
{
    const auto replay = [&](const std::string& lines) {
        return runQuillet({"--headless", "--replay",
                           folder.write("answers.txt", "Design.New\nDesign.Box 1 1 1\n" + lines).string()});
    };
    const auto fails = [&](const std::string& lines, const std::string& message) {
        const ProcessResult result = replay(lines);
        EXPECT_EQ(result.exitCode, 1) << lines;
        EXPECT_NE(result.errors.find(message), std::string::npos) << lines << result.errors;
    };
    fails("Transcripting.Answer Perhaps\nDocument.Close\n", "answers.txt:4: \"Perhaps\" is not an answer");
    fails("Transcripting.Answer Yes\nDesign.Box 2 2 2\n",
          "answers.txt:4: The answer \"Yes\" given before this line was not asked for.");
    fails("Transcripting.AnswerFiles a.stp\nDesign.Box 2 2 2\n",
          "answers.txt:4: The answer \"a.stp\" given before this line was not asked for.");
    fails("Document.Close\n", "answers.txt:3: ");
    const ProcessResult answered = replay("Transcripting.Answer 1\nDocument.Close\n");
    EXPECT_EQ(answered.exitCode, 0) << answered.errors;
    holds(R"(
import quillet, Transcripting, Document
quillet.new_document()
quillet.run('Design.Box 1 1 1')
Transcripting.Answer('1')
Document.Close()
assert quillet.documents() == []
)");
}

TEST_F(ScriptingTest, AMacroIsACommandThatPlaysItsFileWithItsParametersAndIsRecordedAsOneLine)
{
    const std::string profile = (folder.path() / "profile").string();
    const boost::filesystem::path macros = folder.path() / "profile/scripts/macros";
    boost::filesystem::create_directories(macros);
    boost::filesystem::permissions(folder.path() / "profile/scripts", boost::filesystem::owner_all);
    folder.write("profile/scripts/macros/Plate.txt",
                 "# of ${nothing}\nDesign.Box ${length:-80} ${width:-50} 8\n!Document.Open $${length}\n");
    folder.write("profile/scripts/macros/Ask.txt", "Design.Sphere ${radius}\n");
    const std::string recording = (folder.path() / "recording.txt").string();
    const auto run = [&](const std::vector<std::string>& lines) {
        std::vector<std::string> all{"--headless", "--profile-dir", profile, "--command", "Design.New"};
        for (const std::string& line : lines)
            all.insert(all.end(), {"--command", line});
        return runQuillet(all);
    };
    const ProcessResult recorded = run({"Commands.Start \"RecordMacroCommand\" \"Name=Two Balls\"",
                                        "Design.Sphere 5", "Design.Sphere 5 20,0,0", "Transcripting.Stop"});
    EXPECT_EQ(recorded.exitCode, 0) << recorded.errors;
    const ProcessResult played =
        run({"Transcripting.Start \"" + recording + "\"", "Commands.Start \"Macro.Two Balls\"",
             "Commands.Start Macro.Plate", "Transcripting.Stop", "Component.CheckCount all = 3,3,3",
             "Body.CheckBounds plate Box1 = 0,0,0,80,50,8"});
    EXPECT_EQ(played.exitCode, 0) << played.errors;
    const std::string lines = TestSupport::contentOf(recording);
    EXPECT_NE(lines.find("Two Balls.txt"), std::string::npos) << lines;
    EXPECT_NE(lines.find("length=80 width=50"), std::string::npos) << lines;
    EXPECT_EQ(lines.find("Design.Box"), std::string::npos) << lines;
    // There is nobody to fill in the required fields.
    EXPECT_EQ(run({"Commands.Start Macro.Ask", "Component.CheckCount all = 0,0,0"}).exitCode, 0);
    for (const char* name : {"a/b", ".hidden", "Plate"})
        EXPECT_NE(run({"Commands.Start RecordMacroCommand Name=" + std::string(name)}).exitCode, 0) << name;
}

TEST_F(ScriptingTest, ARecordingBringsBackWhatWasOpenAndHasNoIdentifierThatNobodyNames)
{
    const auto run = [&](const std::vector<std::string>& lines) {
        std::vector<std::string> all{"--headless"};
        for (const std::string& line : lines)
            all.insert(all.end(), {"--command", line});
        const ProcessResult result = runQuillet(all);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result;
    };
    const auto in = [&](const char* name) { return '"' + (folder.path() / name).string() + '"'; };
    const auto recorded = [&](const char* name) { return TestSupport::contentOf(folder.path() / name); };
    run({"Design.New", "Design.Box 10 20 30", "Design.Export " + in("block.step"), "Design.New",
         "Design.Sphere 5", "Document.SaveAs " + in("ball.vlra")});
    const std::string made = run({"Document.Open " + in("ball.vlra"), "Document.Open " + in("block.step"),
                                  "Selection.Select Box1:1/Box1:1", "Transcripting.Start " + in("open.txt"),
                                  "Design.Box 1 1 1 50,0,0", "Transcripting.Stop", "Script.Selection",
                                  "Script.Camera", "Design.Info /Json"})
                                 .output;
    const std::string opened = recorded("open.txt");
    EXPECT_NE(opened.find("Document.Open ball.vlra\nDocument.Open block.step\n"), std::string::npos)
        << opened;
    EXPECT_NE(opened.find("Selection.Select"), std::string::npos) << opened;
    EXPECT_EQ(opened.find("Transcripting.Document"), std::string::npos) << opened;
    // Played with nothing open, it has the same result.
    const ProcessResult played =
        runQuillet({"--headless", "--replay", (folder.path() / "open.txt").string(), "--command",
                    "Script.Selection", "--command", "Script.Camera", "--command", "Design.Info /Json"});
    EXPECT_EQ(played.exitCode, 0) << played.errors << opened;
    EXPECT_TRUE(made.ends_with(played.output)) << opened << made << played.output;
    run({"Design.New", "Design.Box 1 1 1", "Transcripting.Start " + in("unsaved.txt"), "Design.Sphere 1",
         "Transcripting.Stop"});
    const std::string unsaved = recorded("unsaved.txt");
    EXPECT_NE(unsaved.find("# When this was recorded, Untitled1 was open"), std::string::npos) << unsaved;
    // Two recordings of the same session are equal; what is named by its identifier keeps it.
    for (const char* name : {"one.txt", "two.txt"})
        run({"Transcripting.Start " + in(name), "Design.New", "Design.Box 1 1 1", "Transcripting.Stop"});
    EXPECT_EQ(recorded("one.txt"), recorded("two.txt"));
    run({"Transcripting.Start " + in("named.txt"), "Design.New", "Design.New",
         "VuCommands.CycleOpenDocumentsCmd", "Transcripting.Stop"});
    EXPECT_NE(recorded("named.txt").find("Transcripting.Document"), std::string::npos)
        << recorded("named.txt");
}

} // namespace
