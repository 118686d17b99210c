#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

using TestSupport::ProcessResult;
using TestSupport::runQuillet;
using TestSupport::ScratchFolder;

namespace {

/// The beginning of each script.
constexpr const char* kHead = R"(
import math, sys
import quillet
from quillet import design
def near(a, b, by=1e-9):
    return all(abs(x - y) <= by for x, y in zip(a, b)) if hasattr(a, '__len__') else abs(a - b) <= by
def refused(call, *words, error=quillet.CommandError):
    try:
        call()
    except error as why:
        assert all(word in str(why) for word in words), why
    else:
        assert False, words
steps = lambda: quillet.run('VuCommands.UndoCmd')
quillet.new_document()
)";

class DesignScriptTest : public testing::Test
{
protected:
    /// Runs a script whose assertions must hold.
    ProcessResult holds(const std::string& code, std::vector<std::string> options = {})
    {
        options.insert(options.end(),
                       {"--headless", "--script", folder.write("script.py", kHead + code).string()});
        const ProcessResult result = runQuillet(options);
        EXPECT_EQ(result.exitCode, 0) << result.errors << "signal " << result.signal;
        return result;
    }

    ScratchFolder folder;
};

TEST_F(DesignScriptTest, WhatIsMadeIsAnObjectWhateverItIsCalledAndWhereverItIs)
{
    holds(R"(
plate = design.box(80, 50, 8, name='Plate', colour='#2f86e0')
assert (plate.path, plate.name, plate.colour, plate.opacity) == ('Plate:1', 'Plate', (0x2f, 0x86, 0xe0), 1)
steps()
assert quillet.model().children == []   # one step, though it has a name and a colour
plate = design.box(80, 50, 8, (0, 0, 0), 'Z', name='Plate')
hole = design.cylinder(4, 8, at=(15, 25, 0))
holes = [hole, *design.pattern(hole, 'X', 25, 3)]
assert [h.path for h in holes] == ['Cylinder1:1', 'Cylinder1:2', 'Cylinder1:3']
assert design.subtract(plate, holes) is plate
assert near(plate.body.volume, 80 * 50 * 8 - 3 * math.pi * 16 * 8, 1e-6)
refused(lambda: hole.name, 'any more')
assert len(quillet.model().children) == 1
ball, cone, ring = design.sphere(3, (0, 0, 90)), design.cone(4, 0, 5, direction='-X'), design.torus(20, 3)
assert near(ball.body.volume, 36 * math.pi) and near(cone.bounds[0][0], -5, 1e-6)
assert ring.faces[0].kind == 'torus' and ring.faces[0].radius == 3
both = design.join(design.box(1, 1, 1, (200, 0, 0)), design.box(2, 1, 1, (200, 0, 0)))
assert near(both.body.volume, 2)
assert near(design.intersect(both, design.box(9, 9, 9, (201, 0, 0)), keep=True).body.volume, 1)
image = design.mirror(plate, 'X', 100)
assert near(image.bounds[0], (120, 0, 0), 1e-6) and image != plate
copy = design.copy(ball, (0, 0, '1 in'))
assert copy.name == ball.name and near(copy.bounds[0][2], 87 + 25.4, 1e-4)
around = design.circular_pattern(copy, 'Z', 4, about=(50, 0, 0))
assert len(around) == 3 and len({c.path for c in [ball, copy, *around]}) == 5
grid = design.pattern(ball, 'X', 10, 2, 'Y', 10, 3)
assert len(grid) == 5
# An object names the same thing after others of its name are gone.
again, last = design.copy(ball), design.copy(ball, (0, 0, 99))
place, where = last.placement, last.path
design.delete(again)
assert last.placement == place and last.path != where
design.delete(*around, copy)
assert last in quillet.model().children and copy not in quillet.model().children
refused(lambda: design.box(1, 2, 0), 'Box')
refused(lambda: design.subtract(plate), error=TypeError)
refused(lambda: design.fillet([], 1), 'no edges', error=ValueError)
refused(lambda: design.fillet(plate.edges, 100), 'no room')
# Another document has other components, whatever their numbers.
quillet.new_document()
design.box(1, 1, 1)
refused(lambda: plate.name, "isn't active")
)");
}

TEST_F(DesignScriptTest, WhatIsGivenToAPartIsAStepOfTheModel)
{
    holds(R"(
part, other = design.box(1, 2, 3), design.box(1, 1, 1, (50, 0, 0))
quillet.selection.set([part, other.faces[1]])
part.name = 'A/B'
assert part.path == '"A/B":1' and list(quillet.selection) == ['"A/B":1', 'Box2:1/Body1/Face2']
turned = ((0, -1, 0, 10), (1, 0, 0, 20), (0, 0, 1, 30), (0, 0, 0, 1))
for rows in (turned, ((0, 0, 1, 5), (0, 1, 0, 6), (-1, 0, 0, 7), (0, 0, 0, 1)),
             ((0, 0, -1, 0), (0, 1, 0, 0), (1, 0, 0, 0), (0, 0, 0, 1))):
    part.placement = rows
    assert all(near(a, b, 1e-12) for a, b in zip(part.placement, rows)), part.placement
steps()
assert near(part.placement[0], (0, 0, 1, 5), 1e-12)    # each was one step
part.placement = turned
design.rotate(part, (1, 2, 3), 0.7, about=(1, 1, 1))
design.rotate(part, (1, 2, 3), -0.7, about=(1, 1, 1))
assert all(near(a, b, 1e-12) for a, b in zip(part.placement, turned))
design.move(design.rotate(part, 'Z', '-90 deg', 'Origin'), (0, '1 cm', 0))
assert near([row[3] for row in part.placement], (20, 0, 30))
for wrong in (((2, 0, 0, 0), (0, 2, 0, 0), (0, 0, 2, 0), (0, 0, 0, 1)),
              ((-1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1)), ((1, 0), (0, 1))):
    refused(lambda: setattr(part, 'placement', wrong), 'placement', error=ValueError)
refused(lambda: setattr(quillet.model(), 'placement', turned), error=AttributeError)
assert part.opacity == 1
part.colour = (255, 0, 16)
part.opacity = 0.5
assert part.colour == (255, 0, 16) and near(part.opacity, 0.5, 0.01)
part.colour = 'Teal'
steps()
assert part.colour == (255, 0, 16) and near(part.opacity, 0.5, 0.01)
design.colour(part.faces[:2], '#00ff00')
assert part.colour == (255, 0, 16)
refused(lambda: setattr(part, 'colour', (1, 2, 300)), error=ValueError)
part.visible = False
assert not part.visible
steps()
assert part.visible
)");
}

TEST_F(DesignScriptTest, InertiaIsThatOfTheFormulasWhereverABodyLiesAndWhateverItIsMadeOf)
{
    holds(R"(
def moments(body): return [body.inertia[i][i] for i in range(3)]
def products(body): return [body.inertia[0][1], body.inertia[0][2], body.inertia[1][2]]
box = design.box(10, 20, 30, (500, 0, 0))
formula = [6000 / 12 * (b * b + c * c) for b, c in ((20, 30), (10, 30), (10, 20))]
assert near(moments(box.body), formula, 1e-3) and near(products(box.body), (0, 0, 0), 1e-3)
ball = design.sphere(5, (0, 0, 70))
assert near(moments(ball.body), [8 / 15 * math.pi * 5 ** 5] * 3, 1e-2)
# Turned by half of a right angle, half of the difference is a product, with the sign that the tensor gives it.
design.rotate(box, 'Z', math.pi / 4, 'Origin')
x, y, z = formula
assert near(moments(box.body), ((x + y) / 2, (x + y) / 2, z), 1e-3)
assert near(products(box.body), ((x - y) / 2, 0, 0), 1e-3)
# Several solids of one body, about the centre of all.
two = design.join(design.box(10, 10, 10), design.box(10, 10, 10, (30, 0, 0)))
assert two.body.solids == 2 and near(two.body.centre, (20, 5, 5))
assert near(moments(two.body), [1000 / 6 * 100 * 2] + [1000 / 6 * 100 * 2 + 2000 * 225] * 2, 1e-3)
# Triangles, far away.
quillet.new_document()
design.box(10, 20, 30, (1000, 2000, 3000))
quillet.active_document().export(sys.argv[0] + '.stl')
quillet.open_document(sys.argv[0] + '.stl')
(mesh,) = (c for c in quillet.model().walk() if c.body)
assert all(abs(a - b) < 1e-3 * b for a, b in zip(moments(mesh.body), formula)), mesh.body.inertia
)");
}

TEST_F(DesignScriptTest, FacesEdgesAndVerticesTellWhatTheyAreAndWhoTheirNeighboursAre)
{
    holds(R"(
part = design.box(80, 50, 8)
design.subtract(part, design.cylinder(4, 8, at=(15, 25, 0)))
design.move(part, (100, 0, 0))
body = part.body
assert (len(body.faces), len(body.edges), len(body.vertices)) == (7, 14, 10)
bottom = body.faces.by_area()[-1]
assert bottom in body.faces.facing('-Z') and bottom.normal == (0, 0, -1) and bottom.kind == 'plane'
assert near(bottom.area, 4000 - math.pi * 16, 1e-6) and bottom.radius is None and bottom.axis is None
assert len(bottom.neighbours) == 5 and len(bottom.edges) == 5 and bottom not in bottom.neighbours
(wall,) = body.faces.of_kind('cylinder')
assert wall.concave and not design.cylinder(1, 1, (0, 0, 500)).faces.of_kind('cylinder')[0].concave
assert wall.radius == 4 and wall.axis.direction[2] in (1, -1) and near(wall.axis.point[:2], (115, 25))
assert wall.normal is None and set(wall.neighbours) == set(body.faces.of_kind('plane').parallel_to('X')
                                                           & body.faces.of_kind('plane').parallel_to('Y'))
(rim,) = body.edges.on(wall).on(bottom)
assert (rim.kind, rim.radius) == ('circle', 4) and near(rim.length, 8 * math.pi, 1e-6)
assert near(rim.centre, (115, 25, 0)) and rim == body.edges.between(wall, bottom)[0] == body.edges.round(4).along('Z')[0]
upright = body.edges.parallel_to('Z')
assert len(upright) == 4 == len(body.edges.parallel_to((0, 0, -2))) and all(near(e.length, 8) for e in upright)
assert upright[0].direction in ((0, 0, 1), (0, 0, -1)) and rim.direction is None
assert len(upright[0].faces) == 2 and len(upright[0].neighbours) == 4
assert {v.position for v in upright.along('X')[-1].vertices} & {(180, 0, 0), (180, 50, 0)}
corner = body.vertices.near((180, 50, 8))[0]
assert corner.position == (180, 50, 8) and len(corner.edges) == 3 and corner.kind == 'vertex'
assert body.faces.along('X')[-1] == body.faces.farthest('X')[0] == body.faces.facing('X')[0]
assert body.edges.by_length()[0].length == min(e.length for e in body.edges)
assert len(body.faces.edges) == 14 and len(body.edges.within((0, 0, 7), (200, 60, 9))) == 5
assert body.edges[2:4] == [body.edges[2], body.edges[3]] and len(upright + upright[:1]) == 4
assert len(body.edges - upright) == 10 and bottom.number == int(bottom.path.rsplit('Face')[-1])
assert near(quillet.measure.area(bottom), bottom.area, 1e-6)
assert near(body.centre[2], 4) and near(body.volume, 80 * 50 * 8 - math.pi * 128, 1e-6)
refused(lambda: body.edges.parallel_to('W'), 'not an axis', error=ValueError)
mesh = body.mesh
assert mesh['positions'].shape[1] == 3 and mesh['positions'].format == 'f' and mesh['positions'].readonly
assert max(max(row) for row in mesh['triangles'].tolist()) == mesh['positions'].shape[0] - 1
assert mesh['faces'].shape == (7, 3) and mesh['vertices'].shape == (10, 3)
# A form for all others, and a body of triangles.
assert [f.kind for f in design.sphere(2, (0, 0, 99)).faces] == ['sphere']
quillet.active_document().export(sys.argv[0] + '.stl')
quillet.open_document(sys.argv[0] + '.stl')
found = [c for c in quillet.model().walk() if c.body]
assert found and found[0].faces and all(f.area > 0 for f in found[0].faces)
)");
}

TEST_F(DesignScriptTest, AnEdgeThatIsHeldFollowsItsBodyOrSaysThatItIsGone)
{
    holds(R"(
plate = design.box(80, 50, 8)
first, second, third, fourth = plate.edges.parallel_to('Z')
bottom, = plate.faces.facing('-Z')
was = third.path
assert bottom.area == 4000
assert design.fillet(first, 5) == plate
refused(lambda: first.path, 'Edge', "isn't there any more")
design.fillet([second, fourth], 5)
assert third.path != was and near(quillet.measure.length(third), 8)
assert quillet.measure.area(bottom) < bottom.area == 4000
quillet.run('VuCommands.UndoCmd'); quillet.run('VuCommands.UndoCmd')
assert third.path == was and near(quillet.measure.length(first), 8)
plate.name = 'Lid'
assert first.path.startswith('Lid:1/')
kept = plate.faces
kept[0].neighbours
design.chamfer(plate.edges.on(kept.facing('Z')), 1)
refused(lambda: kept[0].area, 'has changed')
)");
}

TEST_F(DesignScriptTest, ARecordingHasTheLinesThatTheObjectsStandFor)
{
    const std::string lines = (folder.path() / "lines.txt").string();
    holds("quillet.run('Transcripting.Start \"" + lines + R"("')
plate = design.box(80, 50, 8, name='Plate')
design.fillet(plate.edges.parallel_to('Z'), 5)
plate.placement = ((1, 0, 0, 7), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1))
quillet.run('Transcripting.Stop')
)");
    const std::string recorded = TestSupport::contentOf(lines);
    for (const char* line : {"Design.Box 80 50 8", "RenameCommand Plate", "Design.Fillet", "Design.Move"})
        EXPECT_NE(recorded.find(line), std::string::npos) << recorded;
    EXPECT_EQ(recorded.find("Script.Component"), std::string::npos) << recorded;
    const ProcessResult played = runQuillet({"--headless", "--command", "Design.New", "--replay", lines,
                                             "--command", "Measure.Position Plate /Plain"});
    EXPECT_EQ(played.exitCode, 0) << played.errors;
    EXPECT_EQ(played.output.substr(played.output.rfind('\n', played.output.size() - 2) + 1).substr(0, 2),
              "47")
        << played.output;
}

TEST_F(DesignScriptTest, AnyPythonImportsTheProgramAndIsLeftAsItWas)
{
    folder.write("Options.py", "mine = True\n");
    const auto python = [&](const std::string& code) {
        return TestSupport::runProcess(
            "/usr/bin/python3", {folder.write("own.py", code).string(), folder.path().string()},
            {.environment = {"PYTHONPATH=" + (TestSupport::runningTree() / "lib" / "python").string(),
                             "QUILLET_PROFILE_DIR=" + (folder.path() / "profile").string(), "DISPLAY="}});
    };
    const ProcessResult result =
        python(std::string("import sys\nbefore = (sys.stdout, sys.stdin, list(sys.argv))\n"
                           "modules = set(sys.modules)\n") +
               kHead + R"(
assert (sys.stdout, sys.stdin, sys.argv) == before
assert not {'Design', 'Camera', 'Model'} & (set(sys.modules) - modules)
part = design.box(10, 20, 30)
design.fillet(part.edges.parallel_to('Z'), 2)
import Design, Options
assert Options.mine and Design.Box(1, 2, 3) == '' and len(quillet.model().children) == 2
refused(lambda: design.box(0, 1, 1), 'Box')
path = sys.argv[1] + '/part.vlra'
quillet.active_document().save_as(path).close()
assert quillet.documents() == []    # a line has done its work to the end when it returns
quillet.open_document(path)
assert quillet.parameters['out'] and near(quillet.model().children[1].body.volume, 6)
shown = quillet.show(320, 200)
assert shown._repr_png_()[:8] == b'\x89PNG\r\n\x1a\n' and int.from_bytes(shown.png[16:20], 'big') == 320
import threading
told = []
def work():
    try: design.box(1, 1, 1)
    except RuntimeError as error: told.append('main thread' in str(error))
thread = threading.Thread(target=work); thread.start(); thread.join()
assert told == [True]
import atexit
class Late:
    def __del__(self):
        try: Design.Box(1, 1, 1)
        except RuntimeError as error: print(error)
late = Late()
quillet.run('Script.BeginTransaction Left')
design.box(5, 5, 5)
sys.exit(3)
)");
    EXPECT_EQ(result.exitCode, 3) << result.errors << "signal " << result.signal;
    EXPECT_NE(result.errors.find("\"Left\" was still open"), std::string::npos) << result.errors;
    EXPECT_EQ(result.output, "the application has come to its end\n");
}

TEST_F(DesignScriptTest, FunctionsAreToldOfChangesOnceALineIsAtItsEnd)
{
    const ProcessResult result = holds(R"(
told = []
@quillet.on('model')
def model():
    told.append(('model', len(quillet.model().children)))
quillet.on('selection', lambda: quillet.active_document() and told.append(('selection', len(quillet.selection))))
quillet.on('document', lambda: told.append('document'))
def told_of(line):
    told.clear()
    quillet.run(line)
    return [each for each in told if each != 'document']
assert told_of('Design.Box 1 2 3') == [('model', 1)]
assert told_of('Design.Pattern Box1 X 5 4') == [('model', 4)]
assert told_of('Script.Select Box1:1 Box1:2') == [('selection', 2)]
assert told_of('Camera.ZoomIn') == []
told.clear()
quillet.new_document()
assert 'document' in told and ('selection', 0) in told
assert told_of('Script.Select') == []
design.box(1, 1, 1)
assert told_of('Script.Select Box1') == [('selection', 1)]
quillet.active_document().close(discard=True)
quillet.documents()[0].activate()
assert told_of('VuCommands.UndoCmd')[-1] == ('model', 1)
quillet.off('model', model)
assert told_of('VuCommands.RedoCmd') == []
refused(lambda: quillet.on('weather', model), 'weather', 'closing', error=ValueError)
quillet.on('model', lambda: 1 / 0)
assert len(quillet.model().children) == 4 and told_of('Design.Box 1 1 1') == []
)");
    EXPECT_NE(result.errors.find("ZeroDivisionError"), std::string::npos) << result.errors;
}

TEST_F(DesignScriptTest, AFunctionIsACommandWithALineThatRecordingsHave)
{
    const std::string lines = (folder.path() / "lines.txt").string();
    const std::string scripts = R"(
@quillet.command(title='Three balls', key='Ctrl+Alt+B')
def balls():
    """Adds three balls."""
    for i in range(3):
        design.sphere(1, (5 * i, 0, 0))
@quillet.command('Broken')
def fails():
    return 1 / 0
)";
    holds(scripts + "quillet.run('Transcripting.Start \"" + lines + R"("')
assert quillet.run('Scripts.balls') == '' and len(quillet.model().children) == 3
quillet.run('Commands.Start Script.balls')
assert len(quillet.model().children) == 6
refused(lambda: quillet.run('Scripts.Broken'), 'ZeroDivisionError')
refused(lambda: quillet.run('Scripts.balls 7'), 'parameter')
assert 'Script.balls' in quillet.run('Commands.List') and 'Three balls' in quillet.run('Commands.List')
import Scripts
Scripts.balls()
balls()
assert len(quillet.model().children) == 12 and Scripts.balls.__doc__ == 'Adds three balls.'
@quillet.command
def balls():
    design.box(1, 1, 1)
Scripts.balls()
assert len(quillet.model().children) == 13
refused(lambda: quillet.command('a b')(balls), 'not a name', error=ValueError)
)");
    const std::string recorded = TestSupport::contentOf(lines);
    const auto count = [&](const std::string& text) {
        size_t found = 0;
        for (size_t at = recorded.find(text); at != std::string::npos; at = recorded.find(text, at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("Scripts.balls"), 4u) << recorded;
    // The function called as such.
    EXPECT_EQ(count("Design.Sphere"), 3u) << recorded;
    boost::filesystem::create_directories(folder.path() / "profile/scripts/autorun");
    folder.write("profile/scripts/autorun/balls.py",
                 "import quillet\nfrom quillet import design\n" + scripts);
    const ProcessResult played = runQuillet(
        {"--headless", "--profile-dir", (folder.path() / "profile").string(), "--command", "Design.New",
         "--command", "Scripts.balls", "--command", "Component.CheckCount all = 3,3,3"});
    EXPECT_EQ(played.exitCode, 0) << played.errors;
}

TEST_F(DesignScriptTest, PythonIsReadFromStandardInput)
{
    const ProcessResult result =
        runQuillet({"--headless", "--python"},
                   {.input = "import quillet\nfor size in (1, 2):\n    quillet.new_document()\n"
                             "print(len(quillet.documents()))\n"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "2\n");
    const ProcessResult failed = runQuillet({"--headless", "--python"}, {.input = "x = 1\nprint(x / 0)\n"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_NE(failed.errors.find(":2: ZeroDivisionError"), std::string::npos) << failed.errors;
    // On a terminal it is a console.
    const ProcessResult typed = TestSupport::runProcess(
        "/usr/bin/script",
        {"-q", "-c",
         (TestSupport::runningTree() / "bin" / "quillet").string() + " --headless --python --profile-dir " +
             (folder.path() / "profile").string(),
         "/dev/null"},
        {.input = "quillet.new_document()\nfor i in range(2):\n  made = design.box(1, 1, "
                  "1)\n\n10 + len(quillet.docum\t())\n"
                  "1 / 0\nimport sys\nsys.exit(3)\n"});
    for (const char* text : {">>> ", "... ", "Document(session=", "\n11\r\n", "ZeroDivisionError"})
        EXPECT_NE(typed.output.find(text), std::string::npos) << text << " in " << typed.output;
}

} // namespace
