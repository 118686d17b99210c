"""What the reference of scripts shows of quillet.measure."""

#: quillet.measure.length
import math
import quillet
from quillet import design, measure

quillet.new_document()
block = design.box(10, 20, 30)
pin = design.cylinder(5, 10, at=(50, 0, 0))
assert measure.length(block.edges.parallel_to("X")[0]) == 10

#: quillet.measure.radius
assert measure.radius(pin.faces.of_kind("cylinder")[0]) == 5

#: quillet.measure.area
assert round(measure.area(block.faces.facing("Z")[0]), 9) == 200

#: quillet.measure.volume
assert round(measure.volume("Box1"), 6) == 6000

#: quillet.measure.loop_length
assert round(measure.loop_length(pin.faces.facing("Z")[0]), 6) == round(10 * math.pi, 6)

#: quillet.measure.position
assert measure.position(pin.faces.facing("Z")[0])[2] == 10

#: quillet.measure.distance
assert measure.distance(block, pin) == 35

#: quillet.measure.delta
assert measure.delta(block, pin)[0] == 35

#: quillet.measure.angle
one, other = block.faces.facing("X")[0], block.faces.facing("Z")[0]
assert round(math.degrees(measure.angle(one, other)), 6) == 90
