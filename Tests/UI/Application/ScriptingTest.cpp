#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Users.h"

#include <boost/filesystem/operations.hpp>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>

using TestSupport::ProcessResult;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

class ScriptingTest : public testing::Test
{
protected:
    /// Runs a script whose assertions must hold; its arguments are `arguments`.
    void holds(const std::string& code, const std::vector<std::string>& arguments = {})
    {
        std::vector<std::string> all{"--headless", "--script", folder.write("script.py", code).string(),
                                     "--"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProcessResult result = runQuillet(all);
        EXPECT_EQ(result.exitCode, 0) << result.errors << "signal " << result.signal;
    }

    ScratchFolder folder;
};

TEST_F(ScriptingTest, DocumentsAreObjects)
{
    holds(R"(
import quillet, sys, os
assert quillet.documents() == [] and quillet.active_document() is None
path = os.path.join(sys.argv[1], 'größe 1.vlra')
first = quillet.new_document()
quillet.run('Design.Box 1 2 3')
assert quillet.active_document().changed and first.path == ''
first = first.save_as(path)
assert (first.name, first.path, first.changed, first.active) == ('größe 1', path, False, True)
second = quillet.new_document()
quillet.run('Design.Box 1 2 3')
assert [d.active for d in quillet.documents()] == [False, True]
first.activate()
assert quillet.active_document().path == path
quillet.documents()[0].export(os.path.join(sys.argv[1], 'one.stl'))
for suffix in ('step', 'iges', 'brep', 'obj', 'gltf', 'glb'):
    quillet.documents()[0].export(os.path.join(sys.argv[1], 'one.' + suffix))
    assert os.path.getsize(os.path.join(sys.argv[1], 'one.' + suffix)) > 0
assert os.path.getsize(os.path.join(sys.argv[1], 'one.stl')) == 84 + 12 * 50
saved, changed = quillet.documents()
saved.close()
try:
    changed.close()
    assert False
except quillet.CommandError as error:
    assert 'not saved' in str(error)
changed.close(discard=True)
assert quillet.documents() == []
assert quillet.open_document(path).assets == ('Design',)
try:
    quillet.open_document(path + '.none')
    assert False
except quillet.CommandError as error:
    assert 'not found' in str(error)
)",
          {folder.path().string()});
}

TEST_F(ScriptingTest, ComponentsAndBodiesTellWhatTheyAre)
{
    holds(R"(
import quillet, Design
quillet.new_document()
assert quillet.model().children == [] and quillet.model().bounds is None
Design.Box(10, 20, 30)
Design.Box(5, 5, 5, (50, 0, 0))
root = quillet.model()
assert (root.path, root.name, root.body) == ('', 'Design', None)
assert root.bounds == ((0, 0, 0), (55, 20, 30))
one, other = root.children
assert [c.path for c in root.walk()] == ['', 'Box1:1', 'Box2:1']
assert abs(one.body.volume - 6000) < 1e-6 and abs(one.body.area - 2200) < 1e-6
assert one.body.closed and (one.body.solids, len(one.body.faces)) == (1, 6)
assert other.bounds == other.body.bounds == ((50, 0, 0), (55, 5, 5))
assert quillet.component('Box2').path == other.path and other.visible
assert one.placement[0] == (1, 0, 0, 0)
quillet.selection.set([one, other, 'Box2:1/Face2'])
other.name = 'Lid'
assert (other.path, other.name) == ('Lid:1', 'Lid') and quillet.component('Lid').path == 'Lid:1'
assert set(quillet.selection) == {'Box1:1', 'Lid:1', 'Lid:1/Body1/Face2'}
quillet.run('VuCommands.UndoCmd')
other = quillet.component('Box2')
other.visible = False
assert not other.visible and not quillet.component('Box2').visible
other.visible = True
assert quillet.component('Box2').visible
# What nobody can set is told, and nothing is kept that means nothing.
for thing, name in ((one, 'nmae'), (one, 'path'), (one, 'bounds'), (one.body, 'name'), (one.body, 'volume'),
                    (quillet.camera, 'eyee'), (quillet.selection, 'paths'), (quillet.active_document(), 'name')):
    try:
        setattr(thing, name, 1)
        assert False, name
    except AttributeError:
        pass
for wrong in (lambda: quillet.component('None'), lambda: quillet.component('Box1:7')):
    try:
        wrong()
        assert False
    except quillet.CommandError as error:
        assert 'Box1' in str(error)
m = quillet.measure
assert abs(m.distance(one, other) - 40) < 1e-9 and m.delta(one, other)[1:] == (0, 0)
assert abs(m.volume(one) - 6000) < 1e-6 and abs(m.area('Box2:1') - 150) < 1e-9
assert abs(m.length('Box2:1/Edge1') - 5) < 1e-9 and abs(m.loop_length('Box2:1/Face1') - 20) < 1e-9
assert abs(m.angle('Box1:1/Face1', 'Box1:1/Face3') - 1.5707963267948966) < 1e-9
quillet.selection.set([one, 'Box2:1/Face2'])
assert list(quillet.selection) == ['Box1:1', 'Box2:1/Body1/Face2'] and len(quillet.selection) == 2
quillet.selection.clear()
assert list(quillet.selection) == []
quillet.active_document().close(discard=True)
for ask in (quillet.model, lambda: list(quillet.selection), lambda: quillet.camera.eye, lambda: m.volume('x')):
    try:
        ask()
        assert False
    except quillet.CommandError as error:
        assert 'active' in str(error), error
)");
}

TEST_F(ScriptingTest, TheCameraIsSetInPartsAndInWhole)
{
    holds(R"(
import quillet, Design
quillet.new_document()
Design.Box(10, 20, 30)
camera = quillet.camera
camera.set(eye=(100, 0, 0), target=(0, 0, 0), up=(0, 0, 1), width=30, height=20)
assert camera.eye == (100, 0, 0) and (camera.width, camera.height) == (30, 20)
camera.eye = (0.1, -200, 1e-3)
assert camera.eye == (0.1, -200, 1e-3) and camera.target == (0, 0, 0)
camera.projection = 1
assert camera.projection == 1
camera.fit()
assert camera.target == (5, 10, 15)
width = camera.width
camera.zoom(2)
assert abs(camera.width - width / 2) < 1e-9
try:
    camera.set(lens=3)
    assert False
except TypeError as error:
    assert 'lens' in str(error)
)");
}

TEST_F(ScriptingTest, ATransactionIsOneStepAndAnExceptionTakesItBack)
{
    holds(R"(
import quillet, Design, VuCommands, Document, sys
quillet.new_document()
count = lambda: len(quillet.model().children)
with quillet.transaction('Two boxes'):
    Design.Box(1, 1, 1)
    Design.Box(2, 2, 2)
assert count() == 2
VuCommands.UndoCmd()
assert count() == 0
VuCommands.RedoCmd()
assert count() == 2
for failure in (ValueError, SystemExit, KeyboardInterrupt):
    try:
        with quillet.transaction('None'):
            Design.Box(3, 3, 3)
            assert count() == 3
            raise failure
    except failure:
        assert count() == 2
with quillet.transaction('Outer'):
    Design.Box(3, 3, 3)
    with quillet.transaction('Inner'):
        Design.Box(4, 4, 4)
assert count() == 4
VuCommands.UndoCmd()
assert count() == 2
# A line that fails and a part that is taken back take nothing else with them.
with quillet.transaction('Outer'):
    Design.Box(3, 3, 3)
    for radius in (100, 1):
        try:
            Design.Fillet(radius, 'Box3/Edge1')
            break
        except quillet.CommandError:
            assert radius == 100
    try:
        with quillet.transaction('Inner'):
            Design.Box(4, 4, 4)
            Design.Box(5, 5, 5)
            assert count() == 5
            raise ValueError
    except ValueError:
        assert count() == 3
    VuCommands.UndoCmd()
    assert count() == 3 and len(quillet.component('Box3').body.faces) == 7
    Design.Box(6, 6, 6)
assert count() == 4
VuCommands.UndoCmd()
assert count() == 2
VuCommands.RedoCmd()
assert count() == 4 and len(quillet.component('Box3').body.faces) == 7
VuCommands.UndoCmd()
# What was saved and is taken back to that has nothing to save.
path = sys.argv[1] + '/saved.vlra'
Document.SaveAs(path)
try:
    with quillet.transaction('Outer'):
        Design.Box(3, 3, 3)
        raise ValueError
except ValueError:
    assert count() == 2 and not quillet.active_document().changed
try:
    with quillet.transaction('Closed'):
        quillet.active_document().close(discard=True)
    assert False
except quillet.CommandError as error:
    assert 'closed' in str(error)
for line in ('Script.CommitTransaction', 'Script.AbortTransaction', 'Script.BeginTransaction x'):
    try:
        quillet.run(line)
        assert False
    except quillet.CommandError:
        pass
)",
          {folder.path().string()});
}

TEST_F(ScriptingTest, StubsTellEveryFunctionThatThereIs)
{
    const std::string stubs = (folder.path() / "stubs").string();
    const ProcessResult written = runQuillet({"--write-stubs", stubs});
    EXPECT_EQ(written.exitCode, 0) << written.errors;
    holds(R"(
import ast, importlib, os, re, sys
files = os.listdir(sys.argv[1])
assert {'Camera.pyi', 'Design.pyi', 'VuCommands.pyi'} <= set(files)
functions = 0
for file in files:
    tree = ast.parse(open(os.path.join(sys.argv[1], file), encoding='utf-8').read(), file)
    module = importlib.import_module(file[:-4])
    assert ast.get_docstring(tree, clean=False) == module.__doc__
    told = {node.name: node for node in tree.body if isinstance(node, ast.FunctionDef)}
    assert set(told) == {name for name in vars(module) if callable(vars(module)[name])}, file
    for name, node in told.items():
        assert ast.get_docstring(node, clean=False) == vars(module)[name].__doc__
    functions += len(told)
assert functions > 100
box = {n.name: n for n in ast.parse(open(os.path.join(sys.argv[1], 'Design.pyi')).read()).body
       if isinstance(n, ast.FunctionDef)}['Box']
assert [a.arg for a in box.args.posonlyargs] == ['dx', 'dy', 'dz', 'x_y_z', 'direction'] and len(box.args.defaults) == 2
# What a line takes is told by Python itself as well.
import inspect, Design, Script
assert str(inspect.signature(Design.Box)) == '(dx, dy, dz, x_y_z=None, direction=None, /)'
assert str(inspect.signature(Design.Subtract)) == '(target, /, *tool, Keep=False)'
assert str(inspect.signature(Design.Rotate)) == '(path, axis, angle, /, *more)'
import Body, Camera, Model, Transcripting
assert str(inspect.signature(Camera.Set)) == '(position, target, up, near, far, width, height, projection, /)'
assert str(inspect.signature(Model.CheckDigest)).startswith('(description, /, *digest, ')
assert str(inspect.signature(Body.CheckVolume)).startswith('(description, path=None, /, *value, ')
assert str(inspect.signature(Transcripting.Replay)) == '(filename, /, *name_value, KeepGoing=False)'
assert str(inspect.signature(Script.Select)) == '(*path)' and str(inspect.signature(Script.Settle)) == '()'
for area in {file[:-4] for file in files}:
    for function in vars(importlib.import_module(area)).values():
        if callable(function):
            assert not re.search(r'\bp\d', str(inspect.signature(function))), function
)",
          {stubs});
    EXPECT_EQ(runQuillet({"--write-stubs", folder.write("file", "").string()}).exitCode, 1);
}

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

TEST_F(ScriptingTest, ScriptsOfTheUserRunAtEachStartAndMayKeepTheProgramOpen)
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

TEST_F(ScriptingTest, WithoutAHomeNobodyElsesScriptsRun)
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
        EXPECT_NE(result.errors.find("there is no home folder"), std::string::npos) << result.errors;
    }
    // Nor does such a run leave anything behind.
    EXPECT_EQ(
        std::distance(boost::filesystem::directory_iterator(shared), boost::filesystem::directory_iterator()),
        1);
}

TEST_F(ScriptingTest, WhatAScriptHasPrintedIsThereWhenTheProgramIsKilled)
{
    const ProcessResult result = runQuillet(
        {"--headless", "--script",
         folder.write("killed.py", "import os, Camera\nprint('one\\ntwo')\nos.kill(os.getpid(), 9)\n")
             .string()});
    EXPECT_EQ(result.signal, SIGKILL);
    EXPECT_EQ(result.output, "one\ntwo\n");
}

TEST_F(ScriptingTest, AModelThatIsBeingClosedIsNoLongerThereForTheNextLine)
{
    const std::string sample = (folder.path() / "sample.vlra").string();
    holds(R"(
import quillet, sys
path = sys.argv[1]
quillet.run('Design.New')
quillet.run('Design.Box 1 1 1')
quillet.run('Document.SaveAs ' + path)
quillet.run('Document.Close')
quillet.run('Script.Settle')

# Nobody says whether the first is to be saved, so that it stays; the second is leaving.
quillet.run('Design.New')
quillet.run('Design.Box 1 1 1 0,0,0')
quillet.run('Document.Open ' + path)
try:
    quillet.run('Document.CloseAll')
    assert False
except quillet.CommandError as error:
    assert 'not saved' in str(error)
quillet.run('Commands.Start CycleOpenDocumentsCommand')
assert [d.path for d in quillet.documents()] == ['']
quillet.run('Script.Settle')
assert [d.path for d in quillet.documents()] == ['']

quillet.run('Document.Open ' + path)
quillet.run('Document.Close')
for line in ('Document.Activate ' + path, 'Document.Close ' + path, 'Asset.Activate Design ' + path):
    try:
        quillet.run(line)
        assert False, line
    except quillet.CommandError:
        pass

# It is read anew, without what was not saved.
quillet.run('Document.Open ' + path)
quillet.run('Design.Box 2 2 2')
quillet.run('Script.DiscardChanges')
quillet.run('Document.Close')
quillet.run('Document.Open ' + path)
assert not quillet.active_document().changed
assert quillet.run('Script.Component').count('Box') == 1
)",
          {sample});
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

TEST_F(ScriptingTest, TheStandardStreamsAreThoseOfAProgram)
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

TEST_F(ScriptingTest, ADocumentThatALineClosesIsGoneForTheNextOne)
{
    holds(R"(
import quillet, sys, Document, Design
path = sys.argv[1] + '/many.vlra'
quillet.new_document()
Design.Box(1, 1, 1)
Document.SaveAs(path)
for i in range(3):
    Document.Close()
    assert quillet.documents() == []
    Document.Open(path)
    assert not quillet.active_document().changed
    Design.Box(2, 2, 2)
    quillet.run('Script.DiscardChanges')
)",
          {folder.path().string()});
}

TEST_F(ScriptingTest, NothingIsImportedFromWhereTheProgramIsStarted)
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

TEST_F(ScriptingTest, ScriptsFindWhatTheActiveVirtualEnvironmentHasIfItIsForTheirPython)
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
