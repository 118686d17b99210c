#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/ItemService.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>
#include <map>
#include <regex>

namespace fs = boost::filesystem;
using TestSupport::ProcessResult;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

/// One run of an example. `IN` in an argument is the folder with the models, `OUT` the one for results.
struct Example
{
    const char* script;
    std::vector<std::string> arguments;
    const char* output; ///< The output, as a regular expression that matches part of it.
    std::vector<std::string> files = {};
    int exitCode = 0;
};

// clang-format off
const Example kRuns[] = {
    {"flange.py",       {"OUT/flange.step", "--bolts", "5"},               "^5 holes, 134\\.\\d cm3",                  {"flange.step"}},
    {"bracket.py",      {"OUT/bracket.step", "--radius", "6"},             "^\\d+ faces, 9 of them round",             {"bracket.step"}},
    {"bracket.py",      {"OUT/small.step", "--radius", "500"},             "",                                         {}, 1},
    {"convert.py",      {"IN", "OUT", "--format", "stl"},                  "1 failed",                                 {"report.csv", "assembly.stl"}, 1},
    {"parts_list.py",   {"IN/assembly.step", "OUT/parts.csv"},             "3 kinds, 4 parts",                         {"parts.csv"}},
    {"turntable.py",    {"IN/assembly.step", "OUT", "--frames", "3", "--width", "160", "--height", "100"}, "3 pictures", {"frame0000.png", "frame0002.png"}},
    {"interference.py", {"IN/assembly.step"},                              "Plate.* and Bolt.*: 28\\.27\\d mm3\n1 of 6 pairs", {}, 1},
    {"holes.py",        {"IN/assembly.step"},                              "diameter 4\\.00, depth 5\\.00.*\n1 holes", {}},
    {"mass.py",         {"IN/assembly.step", "--density", "1", "--of", "Plate=2"}, "together 4\\.[0-9]+ g",             {}},
    {"enclosure.py",    {"80", "50", "30", "OUT/enclosure.step"},          "^box \\d+ mm3, lid \\d+ mm3",              {"enclosure.step"}},
    {"knob.py",         {"OUT/knob.vlra", "--grips", "8"},                 "^\\d+ faces, \\d+ mm3",                    {"knob.vlra"}},
    {"compare.py",      {"IN/assembly.step", "IN/other.step"},             "Ball.*: gone[^]*1 of 4 parts differ",      {}, 1},
    {"triangles.py",    {"IN/assembly.step"},                              "Plate.*: \\d+ triangles, .* 0\\.\\d+ % from", {}},
};
// clang-format on

class ExamplesTest : public testing::Test
{
protected:
    ExamplesTest() : examples(QUILLET_SOURCE_DIR "/Examples")
    {
        fs::create_directory(folder.path() / "in");
        folder.write("in/broken.step", "nothing of the kind");
        const std::string models = folder
                                       .write("models.py",
                                              R"(
import sys
import quillet
from quillet import design
document = quillet.new_document()
plate = design.box(20, 20, 5, name='Plate')
design.subtract(plate, design.cylinder(2, 5, (15, 15, 0)))
bolt = design.cylinder(3, 10, (5, 5, 4), name='Bolt')
other = design.copy(bolt, (0, 0, 100))
document.export(sys.argv[1] + '/other.step')
ball = design.sphere(2, (50, 50, 0), name='Ball')
document.export(sys.argv[1] + '/assembly.step')
)")
                                       .string();
        const ProcessResult made =
            runQuillet({"--headless", "--script", models, "--", (folder.path() / "in").string()});
        EXPECT_EQ(made.exitCode, 0) << made.errors;
    }

    std::vector<std::string> argumentsOf(const Example& run, const fs::path& out) const
    {
        std::vector<std::string> all = run.arguments;
        for (std::string& argument : all)
            for (const auto& [name, path] :
                 {std::pair<std::string, fs::path>{"IN", folder.path() / "in"}, {"OUT", out}})
                if (argument.starts_with(name))
                    argument.replace(0, name.size(), path.string());
        return all;
    }

    const fs::path examples;
    ScratchFolder folder;
};

TEST_F(ExamplesTest, EachExampleDoesWhatItSaysInTheProgramAndInAnyPython)
{
    std::map<std::string, int> runs;
    for (const auto& entry : fs::directory_iterator(examples))
        if (entry.path().extension() == ".py")
            runs[entry.path().filename().string()] = 0;
    int number = 0;
    for (const Example& run : kRuns) {
        SCOPED_TRACE(run.script);
        ++runs[run.script];
        const fs::path out = folder.path() / ("out" + std::to_string(++number));
        fs::create_directory(out);
        std::vector<std::string> arguments = argumentsOf(run, out);
        const std::string script = (examples / run.script).string();
        ProcessResult result;
        // Each is tried in turn in both ways.
        if (number % 2 == 0) {
            arguments.insert(arguments.begin(), {"--headless", "--script", script, "--"});
            result = runQuillet(arguments);
        } else {
            arguments.insert(arguments.begin(), script);
            result = TestSupport::runProcess(
                "/usr/bin/python3", arguments,
                {.environment = {"PYTHONPATH=" + (TestSupport::runningTree() / "lib" / "python").string(),
                                 "QUILLET_PROFILE_DIR=" + (out / "profile").string()}});
        }
        EXPECT_EQ(result.exitCode, run.exitCode) << result.output << result.errors;
        EXPECT_TRUE(std::regex_search(result.output, std::regex(run.output)))
            << result.output << result.errors;
        for (const std::string& file : run.files)
            EXPECT_GT(fs::exists(out / file) ? fs::file_size(out / file) : 0, 0u) << file;
    }
    EXPECT_GE(runs.size(), 12u);
    for (const auto& [script, count] : runs)
        EXPECT_GT(count, 0) << script << " is never run";
}

TEST_F(ExamplesTest, WhatTheReferenceOfScriptsShowsRunsAndShowsEverythingThatNeedsNoDrive)
{
    const TestSupport::ItemService service;
    const fs::path shown = QUILLET_SOURCE_DIR "/Docs/python";
    const std::string there = folder
                                  .write("there.py", "import os, runpy, sys\nos.chdir(sys.argv[1])\n"
                                                     "runpy.run_path(sys.argv[2], run_name='__main__')\n")
                                  .string();
    size_t scripts = 0;
    for (const auto& entry : fs::directory_iterator(shown)) {
        if (entry.path().extension() != ".py")
            continue;
        const fs::path work = folder.path() / entry.path().stem();
        fs::create_directory(work);
        const ProcessResult result =
            runQuillet({"--headless", "--set", "service=" + service.address(), "--set",
                        "token=" + service.token("ada", "writer"), "--script", there, "--", work.string(),
                        entry.path().string()});
        EXPECT_EQ(result.exitCode, 0) << entry.path() << result.errors;
        ++scripts;
    }
    EXPECT_GE(scripts, 5u);
    const std::string stubs = (folder.path() / "stubs").string();
    ASSERT_EQ(runQuillet({"--write-stubs", stubs}).exitCode, 0);
    const std::string names = folder
                                  .write("names.py", R"(
import pathlib, re, sys
sys.path.insert(0, sys.argv[1])
import scripts
package, docs, stubs = map(pathlib.Path, sys.argv[2:])
shown = scripts.examples(docs)
wanted = {'quillet': scripts.exported(scripts.parsed(package / '__init__.py'))[0] - {'design', 'measure'}}
for file in [package / 'design.py', package / 'measure.py', *stubs.glob('*.pyi')]:
    module = 'quillet.' + file.stem if file.suffix == '.py' else file.stem
    names = scripts.members(scripts.parsed(file), lambda name: name and scripts.public(name))
    wanted[module] = {name for name in names if file.suffix == '.pyi' or name in scripts.functions(file)}
# The drive's want a server; the others open a browser or a dialog, or end the window.
wanted['VuCommands'] = {name for name in wanted['VuCommands'] if not re.match(
    'Cloud|Share|CIP|Subscription|OpenWeb|Feedback|Help|Suggestbox|JoinDisc|ProductTour|Welcome|Videos|CloseWorkspace', name)}
wanted['View'].remove('SaveWindow')
# Recordings alone have it.
wanted['Transcripting'].remove('Document')
missing = sorted(m + '.' + n for m, names in wanted.items() for n in names - set(shown.get(m, ())))
extra = sorted(m + '.' + n for m, names in shown.items() for n in names if n not in wanted.get(m, ()) and n not in ('design', 'measure'))
assert not missing and not extra, (missing, extra)
assert sum(map(len, shown.values())) > 200
)")
                                  .string();
    const ProcessResult checked = TestSupport::runProcess(
        "/usr/bin/python3",
        {"-B", names, QUILLET_SOURCE_DIR "/Tools/Manual",
         (TestSupport::runningTree() / "lib/python/quillet").string(), shown.string(), stubs});
    EXPECT_EQ(checked.exitCode, 0) << checked.errors;
}

TEST_F(ExamplesTest, ThePackageTheStubsAndTheExamplesAreTypedThroughout)
{
    if (!fs::exists("/usr/bin/mypy"))
        GTEST_SKIP() << "NOTICE: mypy isn't installed; the types of the Python package are not checked";
    const std::string stubs = (folder.path() / "stubs").string();
    ASSERT_EQ(runQuillet({"--write-stubs", stubs}).exitCode, 0);
    const std::string package = (TestSupport::runningTree() / "lib" / "python").string();
    const std::string own =
        folder
            .write("own.py", "import Design\nfrom quillet import design\nDesign.Box(1, 2, 3)\n"
                             "Design.Subtract('a', 'b', 'c', Keep=True)\ndesign.box('1', 2, 3)\n"
                             "Design.Box(1, 2, 3, Kep=True)\ndesign.box(1, 2, 3).faces[0].normals\n")
            .string();
    const auto check = [&](std::vector<std::string> what) {
        what.insert(what.begin(), {"--strict", "--no-incremental", "--cache-dir=/dev/null"});
        return TestSupport::runProcess(
            "/usr/bin/mypy", what,
            {.environment = {"MYPYPATH=" + package + ":" + stubs}, .secondsLimit = 300});
    };
    std::vector<std::string> all = {"-p", "quillet"};
    const ProcessResult whole = check(all);
    EXPECT_EQ(whole.exitCode, 0) << whole.output << whole.errors;
    std::vector<std::string> scripts;
    for (const auto& entry : fs::directory_iterator(examples))
        if (entry.path().extension() == ".py")
            scripts.push_back(entry.path().string());
    for (const auto& entry : fs::directory_iterator(stubs))
        scripts.push_back(entry.path().string());
    scripts.push_back(own);
    const ProcessResult found = check(scripts);
    // The three errors, and no others.
    EXPECT_NE(found.output.find("Found 3 errors"), std::string::npos) << found.output << found.errors;
    for (const char* line : {"own.py:5:", "own.py:6:", "own.py:7:"})
        EXPECT_NE(found.output.find(line), std::string::npos) << found.output;
}

} // namespace
