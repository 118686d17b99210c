"""What the reference of scripts shows of quillet.design."""

#: quillet.design.box
import math
import quillet
from quillet import design

quillet.new_document()
plate = design.box(80, 50, 8, name="Plate")
other = design.box(10, 25.4, 8, at=(0, 60, 0), direction="X")

#: quillet.design.cylinder
pin = design.cylinder(4, 20, at=(15, 25, -5))

#: quillet.design.sphere
ball = design.sphere(6, (100, 0, 0), colour="Teal")

#: quillet.design.cone
cone = design.cone(10, 0, 20, at=(100, 30, 0))
assert round(cone.body.volume, 3) == round(math.pi * 100 * 20 / 3, 3)

#: quillet.design.torus
ring = design.torus(20, 3, at=(100, 60, 0))

#: quillet.design.subtract
design.subtract(plate, pin)
assert len(plate.faces.of_kind("cylinder")) == 1

#: quillet.design.join
design.join(plate, design.box(10, 10, 20, at=(60, 20, 0)))
assert plate.bounds[1] == (80, 50, 20)

#: quillet.design.intersect
lens = design.intersect(design.sphere(10, (200, 0, 0)), design.sphere(10, (212, 0, 0)))
assert round(lens.bounds[0][0], 6) == 202

#: quillet.design.fillet
design.fillet(plate.edges.parallel_to("Z").on(plate.faces.farthest("-X")), 5)
assert len(plate.faces.round(5)) == 2

#: quillet.design.chamfer
design.chamfer(plate.faces.facing("Z").along("Z")[-1].edges, "1 mm")

#: quillet.design.move
design.move(ball, (0, 0, "1 cm"))
assert [round(value, 6) for value in ball.body.centre] == [100, 0, 10]

#: quillet.design.rotate
design.rotate(other, "Z", "30 deg", about="Origin")

#: quillet.design.copy
second = design.copy(ball, (0, 0, 20))
assert second.name == ball.name and second.path != ball.path

#: quillet.design.mirror
image = design.mirror(cone, across="X", at=150)
assert round(image.body.centre[0], 6) == 200

#: quillet.design.pattern
row = design.pattern(second, "X", 15, 4)
assert len(row) == 3  # The original is the first of four.

#: quillet.design.circular_pattern
around = design.circular_pattern(cone, "Z", 6, about=(100, 60, 0))
assert len(around) == 5

#: quillet.design.colour
design.colour([plate, *row], "#d04040", opacity=0.8)
design.colour(plate.faces.facing("Z"), (255, 200, 0))

#: quillet.design.delete
design.delete(lens, row)
assert lens not in quillet.model().children
