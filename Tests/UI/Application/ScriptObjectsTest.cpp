#include "Tests/UI/Application/Scripted.h"

using TestSupport::ProcessResult;
using TestSupport::runQuillet;

namespace {

using ScriptObjectsTest = Scripted;

TEST_F(ScriptObjectsTest, DocumentsAreObjects)
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
# Of two with the same name, the one that is meant is closed.
for twice in range(2):
    quillet.open_document(os.path.join(sys.argv[1], 'one.step'))
one, other = quillet.documents()
assert (one.name, one.path) == (other.name, other.path) and other.active
one.close(discard=True)
assert [d.session for d in quillet.documents()] == [other.session]
try:
    one.save()
    assert False
except quillet.CommandError as error:
    assert 'not open any more' in str(error), error
other.close(discard=True)
assert quillet.open_document(path).assets == ('Design',)
try:
    quillet.open_document(path + '.none')
    assert False
except quillet.CommandError as error:
    assert 'not found' in str(error)
)",
          {folder.path().string()});
}

TEST_F(ScriptObjectsTest, ComponentsAndBodiesTellWhatTheyAre)
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

TEST_F(ScriptObjectsTest, TheCameraIsSetInPartsAndInWhole)
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

TEST_F(ScriptObjectsTest, ATransactionIsOneStepAndAnExceptionTakesItBack)
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

TEST_F(ScriptObjectsTest, StubsTellEveryFunctionThatThereIs)
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

TEST_F(ScriptObjectsTest, AModelThatIsBeingClosedIsNoLongerThereForTheNextLine)
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

TEST_F(ScriptObjectsTest, ADocumentThatALineClosesIsGoneForTheNextOne)
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

} // namespace
