#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <QXmlStreamReader>

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>
#include <map>
#include <set>

using TestSupport::ProcessResult;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

struct Case
{
    std::string kind = "passed", type, message, output, errors;
    double seconds = 0;
};

/// The test cases of a JUnit file by name; its counts are in the case without a name.
std::map<std::string, Case> readJUnit(const boost::filesystem::path& file)
{
    std::map<std::string, Case> cases;
    Case* current = nullptr;
    QXmlStreamReader xml(QByteArray::fromStdString(TestSupport::contentOf(file)));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attribute = [&](const char* name) {
            return xml.attributes().value(QLatin1String(name)).toString().toStdString();
        };
        const std::string element = xml.name().toString().toStdString();
        if (element == "testsuite") {
            cases[""].message = attribute("tests") + ' ' + attribute("failures") + ' ' + attribute("errors");
        } else if (element == "testcase") {
            current = &cases[attribute("name")];
            current->seconds = std::stod(attribute("time"));
        } else if (element == "failure" || element == "error") {
            current->kind = element;
            current->type = attribute("type");
            current->message = attribute("message");
        } else if (element == "system-out") {
            current->output = xml.readElementText().toStdString();
        } else if (element == "system-err") {
            current->errors = xml.readElementText().toStdString();
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return cases;
}

class TestRunTest : public testing::Test
{
protected:
    ProcessResult run(const std::vector<std::string>& options)
    {
        std::vector<std::string> all{"--test", models.string()};
        all.insert(all.end(), options.begin(), options.end());
        return runQuillet(all);
    }
    void write(const std::string& name, const std::string& content)
    {
        boost::filesystem::create_directories((models / name).parent_path());
        TestSupport::overwrite(models / name, content);
    }

    ScratchFolder folder;
    boost::filesystem::path models = boost::filesystem::canonical(folder.path()) / "models";
    boost::filesystem::path junit = folder.path() / "report.xml";
};

TEST_F(TestRunTest, EachTranscriptIsReportedInTheWayInWhichItEnded)
{
    write("good.txt", "Design.New\nDocument.Save ${out}/${name}.vlra\n");
    write("good.py", "import Camera, sys\nprint('größe', len(sys.argv), Camera.ZoomIn())\n");
    write("a/b/bad.txt", "Design.New\nNo.Such \"<&>\"\nDesign.New\n");
    write("a/bad.PY", "import os, signal\ndef f():\n  raise ValueError('a ]]> b')\nf()\n");
    write("crash.py", "import os\nprint('before')\nos.abort()\n");
    write("endless.txt", "Camera.ZoomIn\nSleeper.Sleep 3600000\n");
    write("loop.py", "while True: pass\n");
    write("slow.txt", "Performance.StartPerformanceValidation\nPerformance.StartMetric ElapsedTime\n"
                      "Performance.Validate ElapsedTime none\nPerformance.EndPerformanceValidation\n");
    write("slow.performance.json", R"({"format": 1, "references": {"ElapsedTime none":
          {"value": 1, "calibration": 1, "ratio": 0}}})");
    write("slow.py",
          "\xEF\xBB\xBF# Transcript\r\nimport Performance\nPerformance.StartPerformanceValidation()\n"
          "Performance.Validate('ElapsedTime', 'none')\n");
    write("lost.txt", "Transcripting.Start /dev/full\nDesign.New\n");
    write("_helper.py", "1 / 0\n");
    write("leaves.py", "import sys\nsys.exit(3)\n");
    // Work put off until the end of a line is done before the next one.
    const std::string switches =
        "import Asset, Design, Document, VuCommands\nDesign.New()\n"
        "Document.Rename('First')\nDesign.New()\nVuCommands.CycleOpenDocumentsCmd()\n"
        "assert 'First' in Asset.Path()\n";
    write("recorded.py", "# Transcript\nimport quillet\n" + switches);
    write("script.py", switches);
    write("notes.md", "no transcript");
    write("README.txt", "How to use these.\n");
    write("CMakeLists.txt", "add_test(NAME all COMMAND quillet --test .)\n");
    const ProcessResult result = run({"--timeout", "3", "--junit", junit.string(), "--set", "name=x"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output.find("13 transcripts in "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find(": 4 passed, 6 failed, 3 ended by crash or time limit."), std::string::npos);

    std::map<std::string, Case> cases = readJUnit(junit);
    EXPECT_EQ(cases.size(), 14u);
    EXPECT_EQ(cases[""].message, "13 6 3");
    EXPECT_EQ(cases["good.txt"].kind, "passed");
    EXPECT_GT(cases["good.txt"].seconds, 0);
    EXPECT_NE(cases["good.txt"].output.find("/x.vlra"), std::string::npos);
    EXPECT_EQ(cases["good.py"].kind, "passed") << cases["good.py"].errors;
    EXPECT_NE(cases["good.py"].output.find("größe 1 Zoom in."), std::string::npos);
    const std::string at = models.string() + '/';
    EXPECT_EQ(cases["a/b/bad.txt"].kind, "failure");
    EXPECT_EQ(cases["a/b/bad.txt"].message.rfind(at + "a/b/bad.txt:2: ", 0), 0u)
        << cases["a/b/bad.txt"].message;
    EXPECT_EQ(cases["a/bad.PY"].message, at + "a/bad.PY:3: ValueError: a ]]> b");
    EXPECT_EQ(cases["slow.txt"].message.rfind(at + "slow.txt:3: ElapsedTime \"none\" is ", 0), 0u)
        << cases["slow.txt"].message;
    EXPECT_NE(cases["slow.txt"].output.find("Fail to validate ElapsedTime metric\nElapsedTime"),
              std::string::npos)
        << cases["slow.txt"].output;
    EXPECT_EQ(cases["slow.py"].message, at + "slow.py:4: The metric ElapsedTime was not started.");
    EXPECT_NE(cases["lost.txt"].message.find("No space left"), std::string::npos);
    EXPECT_EQ(cases["leaves.py"].message, at + "leaves.py:2: The script ended with code 3");
    EXPECT_EQ(cases["leaves.py"].kind, "failure");
    EXPECT_EQ(cases["crash.py"].kind, "error");
    EXPECT_EQ(cases["crash.py"].message, at + "crash.py: The program was ended by SIGABRT (Aborted).");
    // The call stack, by function names.
    EXPECT_NE(result.output.find("libc.so.6: abort"), std::string::npos) << result.output;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(cases["endless.txt"].type, "timeout");
    EXPECT_EQ(cases["endless.txt"].message,
              at + "endless.txt: It did not end within 3 s, in the line: Sleeper.Sleep 3600000");
    EXPECT_EQ(cases["loop.py"].type, "timeout");
    EXPECT_NE(cases["loop.py"].errors.find("loop.py:1: The script was cancelled."), std::string::npos);
}

TEST_F(TestRunTest, TranscriptsRunInWindowsOfADisplayOfTheRunsOwn)
{
    if (!boost::filesystem::exists("/usr/bin/Xvfb"))
        GTEST_SKIP() << "NOTICE: Xvfb isn't installed; test runs with windows are not tried";
    write("window.txt", "Design.New\nDesign.Box 10 20 30\nView.SaveWindow ${out}/window.png\n");
    EXPECT_EQ(run({}).exitCode, 1);
    const ProcessResult result = run({"--window"});
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    EXPECT_NE(result.output.find("1 passed"), std::string::npos) << result.output;
}

TEST_F(TestRunTest, ThePartsOfAJobArrayAreTheWhole)
{
    for (int i = 0; i < 7; ++i)
        write("t" + std::to_string(i) + ".txt", "Camera.ZoomIn\n");
    std::set<std::string> names;
    size_t sum = 0;
    for (const char* shard : {"1/3", "2/3", "3/3"}) {
        EXPECT_EQ(run({"--shard", shard, "--jobs", "2", "--junit", junit.string()}).exitCode, 0);
        for (const auto& [name, test] : readJUnit(junit))
            if (!name.empty() && ++sum > 0)
                names.insert(name);
    }
    EXPECT_EQ(sum, 7u);
    EXPECT_EQ(names.size(), 7u);
    // Those with known durations are distributed by them.
    const std::string results = (folder.path() / "results.json").string();
    TestSupport::overwrite(results,
                           R"({"format": 1, "tests": {"t0.txt": {"seconds": 9}, "t1.txt": {"seconds": 4},
          "t2.txt": {"seconds": 3}, "t3.txt": {"seconds": 2}, "t4.txt": {"seconds": 1}, "t5.txt": {"seconds": 1}}})");
    EXPECT_EQ(run({"--list", "--results", results, "--shard", "1/2"}).output, "t0.txt\nt3.txt\nt5.txt\n");
    EXPECT_EQ(run({"--list", "--results", results, "--shard", "2/2"}).output,
              "t1.txt\nt2.txt\nt4.txt\nt6.txt\n");
    // More parts than transcripts: the last has nothing to do, and passes.
    EXPECT_EQ(run({"--shard", "9/9"}).exitCode, 0);
}

TEST_F(TestRunTest, WhatFailedIsTriedAgainAndKeptAndRunByItself)
{
    write("bad.txt", "Design.New\nDocument.SaveAs ${out}/left.vlra\nDesign.Export ${out}/left.none\n");
    write("flaky.py", "import os\npath = os.path.join(os.path.dirname(__file__), 'tried')\n"
                      "if not os.path.exists(path):\n    open(path, 'w').close()\n    raise ValueError\n");
    write("good.txt", "Camera.ZoomIn\n");
    EXPECT_EQ(run({"--list"}).output, "bad.txt\nflaky.py\ngood.txt\n");
    EXPECT_EQ(run({"--list", "--filter", "g*", "--filter", "f*.py"}).output, "flaky.py\ngood.txt\n");
    EXPECT_EQ(run({"--filter", "none*"}).exitCode, 2);

    const std::string results = (folder.path() / "results.json").string();
    const boost::filesystem::path kept = folder.path() / "kept", tap = folder.path() / "report.tap";
    const ProcessResult first = run({"--results", results, "--retry", "1", "--artifacts", kept.string(),
                                     "--tap", tap.string(), "--junit", junit.string()});
    EXPECT_EQ(first.exitCode, 1);
    EXPECT_NE(first.output.find("flaky.py (try 2)"), std::string::npos) << first.output;
    EXPECT_NE(first.output.find(": 2 passed, 1 failed, 0 ended"), std::string::npos) << first.output;
    EXPECT_TRUE(boost::filesystem::exists(kept / "bad.txt/left.vlra"));
    EXPECT_NE(first.output.find('"' + (kept / "bad.txt/left.none").string()), std::string::npos)
        << "the folder of the run is gone: " << first.output;
    EXPECT_NE(TestSupport::contentOf(kept / "bad.txt/errors.txt").find("bad.txt:3: "), std::string::npos);
    EXPECT_FALSE(boost::filesystem::exists(kept / "good.txt"));
    const std::string report = TestSupport::contentOf(tap);
    EXPECT_TRUE(report.starts_with("TAP version 13\n1..3\nnot ok 1 - bad.txt\n  ---\n  message: '"))
        << report;
    EXPECT_NE(report.find("\nok 2 - flaky.py\nok 3 - good.txt\n"), std::string::npos) << report;
    EXPECT_NE(TestSupport::contentOf(junit).find("file=\"" + (models / "bad.txt").string() + "\" line=\"3\""),
              std::string::npos);

    EXPECT_EQ(run({"--results", results, "--failed", "--list"}).output, "bad.txt\n");
    write("bad.txt", "Design.New\n");
    EXPECT_EQ(run({"--results", results, "--failed"}).exitCode, 0);
    EXPECT_EQ(run({"--results", results, "--failed", "--list"}).output, "");
    EXPECT_EQ(runQuillet({"--test", (models / "good.txt").string()}).exitCode, 0);
}

TEST_F(TestRunTest, WhatCannotBeRunOrWrittenIsSaid)
{
    const ProcessResult missing = run({});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_NE(missing.errors.find(models.string() + ": No such file or directory."), std::string::npos);
    write("readme.md", "");
    EXPECT_NE(run({}).errors.find("There is no transcript"), std::string::npos);
    write("good.txt", "Camera.ZoomIn\n");
    const ProcessResult unwritten = run({"--junit", (folder.path() / "none/report.xml").string()});
    EXPECT_EQ(unwritten.exitCode, 2);
    EXPECT_NE(unwritten.errors.find("none/report.xml: The report cannot be written: "), std::string::npos)
        << unwritten.errors;
}

TEST_F(TestRunTest, AnInterruptedRunTakesItsProcessesWithIt)
{
    const std::string pidFile = (folder.path() / "pid").string();
    write("endless.py",
          "import os, time\nopen('" + pidFile + "', 'w').write(str(os.getpid()))\ntime.sleep(3600)\n");
    const ProcessResult result =
        runQuillet({"--test", models.string(), "--junit", junit.string()}, {.interruptAfterSeconds = 3});
    EXPECT_EQ(result.exitCode, 1) << "signal " << result.signal;
    EXPECT_NE(result.output.find("interrupted"), std::string::npos);
    EXPECT_EQ(readJUnit(junit)[""].message, "0 0 0");
    const std::string pid = TestSupport::contentOf(pidFile);
    ASSERT_NE(pid, "");
    EXPECT_FALSE(boost::filesystem::exists("/proc/" + pid));
}

TEST_F(TestRunTest, ALineThatHasToFailFailsWhereItDoesNotOrForAnotherReason)
{
    const auto play = [&](const std::string& lines) {
        return runQuillet({"--headless", "--keep-going", "--set", "name=missing", "--replay",
                           folder.write("lines.txt", lines).string()});
    };
    const ProcessResult right =
        play("!Document.Open missing.step\n  !Document.Open ${name}.step \"not found\"\n"
             "Design.New\nDesign.Box 10 10 10\n!Design.Fillet 100 Box1/Edge1 \"no room\"\n"
             "!Body.CheckParts box = 1,7,12 \"faces is 6\"\n!No.Such line \"\"\n");
    EXPECT_EQ(right.exitCode, 0) << right.errors;
    EXPECT_EQ(right.errors, "");
    const ProcessResult wrong =
        play("!Design.New\n!Document.Open missing.step \"no room\"\n!Design.Box 1 1 1 \"\n");
    EXPECT_EQ(wrong.exitCode, 1);
    for (const char* text :
         {"lines.txt:1: The line was to fail, and has done what it says.",
          "lines.txt:2: The line was to fail for another reason, \"no room\". It has failed: ",
          "lines.txt:3: "})
        EXPECT_NE(wrong.errors.find(text), std::string::npos) << text << " in " << wrong.errors;
}

TEST_F(TestRunTest, APictureIsComparedAsAnEyeWouldAndToldWithWhatDiffers)
{
    const auto play = [&](const std::string& lines, const std::string& mode) {
        return runQuillet(
            {"--headless", "--references", mode, "--set", "out=" + folder.path().string(), "--replay",
             folder.write("lines.txt", "Design.New\nDesign.Box 10 20 30\nCommands.Start FitCommand\n" + lines)
                 .string()});
    };
    const std::string line = "View.CheckPicture front/1 200x120\n";
    const boost::filesystem::path kept = folder.path() / "lines.front_1.png";
    const ProcessResult missing = play(line, "compare");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.errors.find("There is no picture " + kept.string()), std::string::npos)
        << missing.errors;
    EXPECT_FALSE(boost::filesystem::exists(kept));
    EXPECT_EQ(play(line, "fill").exitCode, 0);
    const std::string first = TestSupport::contentOf(kept);
    EXPECT_EQ(play(line, "compare").exitCode, 0);
    // Less than a pixel is nothing, and a new part is a big difference.
    EXPECT_EQ(play("Design.Move Box1 \"0.01 mm\" 0 0\n" + line, "compare").exitCode, 0);
    const std::string more = "Design.Colour Red Box1\n";
    const ProcessResult other = play(more + line, "compare");
    EXPECT_EQ(other.exitCode, 1);
    EXPECT_NE(
        other.errors.find(" % of the picture differs from " + kept.string() + ", with a tolerance of 0.1 %."),
        std::string::npos)
        << other.errors;
    for (const char* what : {"actual", "difference"})
        EXPECT_GT(
            boost::filesystem::file_size(folder.path() / ("lines.front_1." + std::string(what) + ".png")),
            100u);
    EXPECT_EQ(play(more + "View.CheckPicture front/1 200x120 +- 99 %\n", "compare").exitCode, 0);
    EXPECT_NE(play("View.CheckPicture front/1 100x60\n", "compare").errors.find("100 x 60 pixels"),
              std::string::npos);
    EXPECT_NE(play("View.CheckPicture front/1 wide\n", "compare").errors.find("\"wide\" is neither a size"),
              std::string::npos);
    EXPECT_EQ(TestSupport::contentOf(kept), first);
    EXPECT_EQ(play(more + line, "update").exitCode, 0);
    EXPECT_NE(TestSupport::contentOf(kept), first);
}

TEST_F(TestRunTest, ChecksTellTheirValuesInTheReportIfTheyAreAsked)
{
    write(
        "values.txt",
        "Design.New\nDesign.Box 10 20 30\nBody.CheckVolume all = 6001 +- 2\nBody.CheckParts all = 1,6,12\n");
    EXPECT_EQ(run({"--junit", junit.string()}).exitCode, 0);
    EXPECT_EQ(readJUnit(junit)["values.txt"].output.find("volume 6000"), std::string::npos);
    EXPECT_EQ(run({"--junit", junit.string(), "--verbose"}).exitCode, 0);
    const std::string told = readJUnit(junit)["values.txt"].output;
    EXPECT_NE(told.find("volume 6000 mm³ (6001 mm³)\n"), std::string::npos) << told;
    EXPECT_NE(told.find("solids 1, faces 6, edges 12\n"), std::string::npos) << told;

    // Where one fails, what differs is told with it.
    write("digest.txt", "Design.New\nDesign.Box 1 2 3\nModel.CheckDigest d\n");
    EXPECT_EQ(run({"--references", "fill"}).exitCode, 0);
    write("digest.txt", "Design.New\nDesign.Box 1 2 3\nDesign.Colour Red Box1\nModel.CheckDigest d\n");
    const ProcessResult differs = run({"--junit", junit.string()});
    EXPECT_EQ(differs.exitCode, 1);
    EXPECT_NE(differs.output.find("\n      component Box1:1: colour "), std::string::npos) << differs.output;
    EXPECT_NE(TestSupport::contentOf(junit).find("\ncomponent Box1:1: colour "), std::string::npos);
}

TEST_F(TestRunTest, RecordingsAreComparedByWhatTheirLinesMean)
{
    const std::string first =
        folder
            .write("first.txt",
                   "# quillet-transcript 1\nDesign.New\nTranscripting.Document a b\nDesign.Box 10 20 30\n"
                   "Design.Subtract Plate Bolt /Keep\nCamera.Set 0.1,2,3\n")
            .string();
    const auto compared = [&](const std::string& lines) {
        return runQuillet({"--compare-recordings", first, folder.write("second.txt", lines).string()});
    };
    const ProcessResult same =
        compared("design.new\n\n# now\nDesign.Box \"10\" 20.0 3e1\nDesign.Subtract /Keep Plate \"Bolt\"\n"
                 "Camera.Set 0.10000000000000001,2,3.0000000001\n");
    EXPECT_EQ(same.exitCode, 0) << same.output;
    EXPECT_EQ(same.output, "");
    const ProcessResult other = compared(
        "Design.New\nDesign.Sphere 5\nDesign.Box 10 20 31\nDesign.Subtract Plate Bolt\nCamera.Set 0.1,2,3\n");
    EXPECT_EQ(other.exitCode, 1);
    const std::string second = (folder.path() / "second.txt").string();
    for (const std::string& line :
         {"+ " + second + ":2: Design.Sphere 5\n", "- " + first + ":4: Design.Box 10 20 30\n",
          "+ " + second + ":3: Design.Box 10 20 31\n",
          "- " + first + ":5: Design.Subtract Plate Bolt /Keep\n"})
        EXPECT_NE(other.output.find(line), std::string::npos) << line << "in " << other.output;
    EXPECT_EQ(other.output.find("Camera"), std::string::npos) << other.output;
    EXPECT_EQ(runQuillet({"--compare-recordings", first, "/no/such/file"}).exitCode, 2);
    EXPECT_EQ(runQuillet({"--compare-recordings", first}).exitCode, 2);
}

TEST_F(TestRunTest, CoverageTellsWhatAFolderHasRunAndWhatNever)
{
    const boost::filesystem::path file = folder.path() / "coverage.jsonl";
    boost::filesystem::create_directories(folder.path() / "covered");
    folder.write("covered/a.txt", "Design.New\nDesign.Box 1 1 1\nDesign.Box 2 2 2\n");
    folder.write("covered/b.py",
                 "import Design\nDesign.New()\nDesign.Box(1, 1, 1)\nDesign.Move('Box1', 1, 0, 0)\n");
    const ProcessResult all =
        runQuillet({"--test", (folder.path() / "covered").string(), "--coverage", file.string()});
    EXPECT_EQ(all.exitCode, 0) << all.output << all.errors;
    const std::string told = TestSupport::contentOf(file);
    for (const char* line :
         {"{\"line\":\"Design.Box\",\"runs\":3}\n", "{\"line\":\"Design.Move\",\"runs\":1}\n",
          "{\"line\":\"Design.Torus\",\"runs\":0}\n", "{\"definition\":\"MoveCommand\",\"runs\":1}\n",
          "{\"definition\":\"JoinCommand\",\"runs\":0}\n"})
        EXPECT_NE(told.find(line), std::string::npos) << line << told.substr(0, 2000);
    EXPECT_EQ(
        runQuillet({"--headless", "--command", "Design.New", "--coverage", "/no/such/folder/file"}).exitCode,
        1);
}

} // namespace
