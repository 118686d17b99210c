"""What the reference of scripts shows of the lines that make models, measure and check them."""

#: Design.New
import Design

Design.New()

#: Design.Box
Design.Box(80, 50, 8)  # The first box is Box1.
Design.Box(10, 10, 20, (60, 20, 0), "0,0,1")

#: Design.Cylinder
Design.Cylinder(4, 20, (15, 25, -5))

#: Design.Sphere
Design.Sphere(6, (100, 0, 0))

#: Design.Cone
Design.Cone(10, 0, 20, (100, 30, 0))

#: Design.Torus
Design.Torus(20, 3, (100, 60, 0))

#: Design.Join
Design.Join("Box1", "Box2")

#: Design.Subtract
Design.Subtract("Box1", "Cylinder1", Keep=True)

#: Design.Intersect
Design.Sphere(6, (106, 0, 0))
Design.Intersect("Sphere1", "Sphere2")

#: Design.Fillet
Design.Fillet("2 mm", "Box1/Edge1")

#: Design.Chamfer
Design.Chamfer("0.5 mm", "Box1/Edge4")

#: Design.Move
Design.Move("Cone1", 0, "1 in", "-2.5 mm")

#: Design.Copy
Design.Copy("Sphere1", 0, 0, 20)

#: Design.Rotate
Design.Rotate("Torus1", "X", "90 deg", "Middle")

#: Design.Mirror
Design.Mirror("Cone1", "X", "150 mm")

#: Design.Pattern
Design.Pattern("Cylinder1", "X", 12, 3, "Y", 12, 2)

#: Design.CircularPattern
Design.CircularPattern("Torus1", "Z", "360 deg", 4, "Point", 150, 60, 0)

#: Design.Separate
Design.Separate("Cylinder1:2")

#: Design.Colour
Design.Colour("Teal", "Box1", "Cone1:1")

#: Design.Hide
Design.Hide("Cone1:1")

#: Design.Show
Design.Show("Cone1:1")

#: Design.ShowAll
Design.ShowAll()

#: Design.Unit
Design.Unit("in")
Design.Unit("mm")

#: Design.Edit
import VuCommands

Design.Edit("Box1:1")
VuCommands.ReturnToEnvironmentCmd()

#: Design.Info
import json

told = json.loads(Design.Info(7.85, Json=True))
assert told

#: Design.Picture
Design.Picture(128, "small.png")

#: Design.Export
Design.Export("model.step")
Design.Export("model.stl", "fine", Combine=True, In=True)

#: Design.Sample
Design.Sample()  # A small model to look at.

#: Design.OpenSample
names = Design.OpenSample().splitlines()
assert names

#: Measure.Length
import Measure

Design.New()
Design.Box(10, 20, 30)
Design.Cylinder(5, 10, (50, 0, 0))
assert float(Measure.Length("Box1/Edge1", Plain=True)) in (10, 20, 30)

#: Measure.Radius
assert Measure.Radius("Cylinder1/Face1", Plain=True) == "5"

#: Measure.Area
print(Measure.Area("Box1/Face1", Exact=True))

#: Measure.Volume
assert abs(float(Measure.Volume("Box1", Plain=True)) - 6000) < 1e-6

#: Measure.LoopLength
print(Measure.LoopLength("Box1/Face1"))

#: Measure.Position
x, y, z = map(float, Measure.Position("Box1/Vertex1", Plain=True).split(","))

#: Measure.Distance
assert Measure.Distance("Box1", "Cylinder1", Plain=True) == "35"

#: Measure.Angle
print(Measure.Angle("Box1/Face1", "Box1/Face3"))

#: Measure.Delta
print(Measure.Delta("Box1", "Cylinder1"))

#: Measure.CheckDistance
import quillet

quillet.run('Measure.CheckDistance gap Box1 Cylinder1 = "35 mm" +- "0.01 mm"')

#: Body.CheckVolume
quillet.run("Body.CheckVolume block Box1 = 6000 mm^3 +- 0.1 %")

#: Body.CheckArea
quillet.run("Body.CheckArea block Box1 = 2200 mm^2")

#: Body.CheckBounds
quillet.run("Body.CheckBounds block Box1 = 0,0,0,10,20,30 +- 0.01 mm")

#: Body.CheckCentre
quillet.run("Body.CheckCentre block Box1 = 5,10,15 +- 0.01 mm")

#: Body.CheckParts
quillet.run("Body.CheckParts block Box1 = 1,6,12")

#: Body.CheckFreeEdges
quillet.run("Body.CheckFreeEdges closed = 0,0,0")

#: Component.CheckCount
import Component

Component.CheckCount("parts")  # The first run writes the reference, the following ones compare with it.

#: Component.CheckColours
Design.Colour("#ff0000", "Box1")
quillet.run("Component.CheckColours red Box1 = #ff0000ff")

#: Model.CheckSelection
import Selection

Selection.Select("Box1:1")
quillet.run("Model.CheckSelection chosen = Box1:1")

#: Model.Digest
import Model

before = Model.Digest()
VuCommands.UndoCmd()
VuCommands.RedoCmd()
assert Model.Digest() == before

#: Model.CheckDigest
Model.CheckDigest("whole", Selection=True)

#: Selection.Select
Selection.Select("Box1:1", "Box1:1/Face2")

#: Selection.Add
Selection.Add("Cylinder1:1/Edge1")

#: Selection.Remove
Selection.Remove("Box1:1")

#: Selection.List
assert len(Selection.List().splitlines()) == 2

#: Selection.Clear
Selection.Clear()

#: Selection.Undo
Selection.Undo("on")
Selection.Undo("off")
