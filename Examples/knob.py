"""A knob with grips around it, a bore with a flat for its shaft, and a mark that has a colour.

    python3 Examples/knob.py knob.vlra --grips 16
"""

import argparse

import quillet
from quillet import design

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("file")
options.add_argument("--radius", type=float, default=15)
options.add_argument("--height", type=float, default=14)
options.add_argument("--grips", type=int, default=12)
chosen = options.parse_args()

document = quillet.new_document()
with quillet.transaction("Knob"):
    knob = design.cone(chosen.radius, chosen.radius * 0.9, chosen.height, name="Knob", colour="Black")
    top = knob.faces.facing("Z")[0]
    design.fillet(top.edges, 2)
    grip = design.cylinder(chosen.radius / 8, chosen.height, at=(chosen.radius * 1.02, 0, 0))
    design.subtract(knob, grip, design.circular_pattern(grip, "Z", chosen.grips))

    # A shaft of 6 mm with a flat: the bore keeps what the flat leaves.
    bore = design.cylinder(3, chosen.height - 4)
    design.subtract(bore, design.box(6, 6, chosen.height, at=(1.5, -3, 0)))
    design.subtract(knob, bore)

    mark = design.box(chosen.radius * 0.5, 1, 1, at=(chosen.radius * 0.25, -0.5, chosen.height - 0.5), name="Mark")
    design.subtract(knob, mark, keep=True)
    mark.colour = (255, 255, 255)

assert knob.body is not None
print(f"{len(knob.faces)} faces, {knob.body.volume:.0f} mm3")
document.save_as(chosen.file)
