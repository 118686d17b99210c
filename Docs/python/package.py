"""What the reference of scripts shows of the package quillet: each piece begins with the names that it is for. All of it
is one script, which is run with the tests."""

#: quillet.new_document, quillet.Document, quillet.active_document
import os
import quillet
from quillet import design

document = quillet.new_document()
assert quillet.active_document().name == document.name

#: quillet.design, quillet.Component
plate = design.box(80, 50, 8, name="Plate")
plate.colour = "#2f86e0"
plate.opacity = 0.5
assert (plate.path, plate.visible) == ("Plate:1", True)
assert plate.bounds == ((0, 0, 0), (80, 50, 8))

#: quillet.Body
body = plate.body
assert round(body.volume, 6) == 32000 and body.closed
density = 7.85e-6  # kg/mm3
mass, moments = body.volume * density, [body.inertia[axis][axis] * density for axis in range(3)]
assert round(mass, 4) == 0.2512 and [round(moment, 2) for moment in moments] == [53.67, 135.31, 186.31]

#: quillet.Face, quillet.Faces
top = plate.faces.facing("Z")[0]
assert (top.kind, top.normal, round(top.area, 6)) == ("plane", (0, 0, 1), 4000)
assert len(top.neighbours) == 4 and plate.faces.by_area()[-1].area == top.area

#: quillet.Edge, quillet.Edges
upright = plate.edges.parallel_to("Z")
assert [edge.length for edge in upright] == [8, 8, 8, 8]
assert len(plate.edges.on(top)) == 4 and len(plate.edges.on(top).farthest("X")) == 1

#: quillet.Vertex, quillet.Vertices
corner = plate.vertices.near((80, 50, 8))[0]
assert corner.position == (80, 50, 8) and len(corner.edges) == 3

#: quillet.Axis
hole = design.subtract(plate, design.cylinder(3, 8, at=(10, 10, 0))).faces.of_kind("cylinder")[0]
assert hole.concave and hole.axis.direction in ((0, 0, 1), (0, 0, -1)) and hole.radius == 3

#: quillet.model
for part in quillet.model().walk():
    if part.body:
        print(part.path, f"{part.body.volume:.1f} mm3")

#: quillet.component
plate = quillet.component("Plate:1")
plate.name = "Base"
assert plate.path == "Base:1"

#: quillet.selection, quillet.Selection
quillet.selection.set([plate, plate.faces[0]])
assert list(quillet.selection) == ["Base:1", "Base:1/Body1/Face1"]
quillet.selection.clear()

#: quillet.CommandError
try:
    design.fillet(plate.edges, 500)
except quillet.CommandError as error:
    print(error)

#: quillet.transaction
with quillet.transaction("Two balls"):
    design.sphere(5, (0, 0, 50))
    design.sphere(5, (20, 0, 50))
quillet.run("VuCommands.UndoCmd")  # Takes both back.
assert [part.name for part in quillet.model().children] == ["Base"]

#: quillet.run
assert quillet.run("Measure.Volume Base /Plain").startswith("31773.8")

#: quillet.camera, quillet.Camera
quillet.camera.set(eye=(200, -200, 150), target=(40, 25, 4), up=(0, 0, 1))
quillet.camera.fit()
quillet.camera.zoom(2)

#: quillet.picture, quillet.Picture
quillet.picture(320, 200, transparent=True).save("plate.png")
assert os.path.getsize("plate.png") > 1000

#: quillet.show
quillet.show(320, 200)  # As the last line of a notebook's cell it shows the picture there.

#: quillet.parameters, quillet.Parameters
length = float(quillet.parameters.get("length", 80))  # quillet --script FILE --set length=120
assert length == 80

#: quillet.on, quillet.off
changes = []


@quillet.on("model")
def changed():
    changes.append(quillet.active_document().changed)


design.box(1, 1, 1, (0, 0, 100))
assert changes == [True]
quillet.off("model", changed)

#: quillet.command
@quillet.command(title="Three Balls", key="Ctrl+Alt+B")
def balls():
    """Adds three balls in a row."""
    for i in range(3):
        design.sphere(5, (20 * i, 0, 0))


quillet.run("Scripts.balls")
assert len(quillet.model().children) == 5

#: quillet.on_closing_down
quillet.on_closing_down(lambda: True)  # False would keep the program open.

#: quillet.documents
document = document.save_as("plate.vlra")
document.export("plate.step")
for each in quillet.documents():
    print(each.name, "changed" if each.changed else "saved", each.path)

#: quillet.open_document
document.close()
document = quillet.open_document("plate.step")
assert any(part.body for part in quillet.model().walk())

#: quillet.version
print("quillet", quillet.version)
