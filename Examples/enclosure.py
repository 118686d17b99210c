"""A box with a lid for a circuit board: walls, posts for screws, and a lid beside it that fits.

    python3 Examples/enclosure.py 80 50 30 enclosure.step
"""

import argparse
from typing import List

import quillet
from quillet import design

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("length", type=float)
options.add_argument("width", type=float)
options.add_argument("height", type=float)
options.add_argument("file")
options.add_argument("--wall", type=float, default=2)
options.add_argument("--gap", type=float, default=0.2, help="between box and lid")
chosen = options.parse_args()
length, width, height, wall = chosen.length, chosen.width, chosen.height, chosen.wall

document = quillet.new_document()
with quillet.transaction("Enclosure"):
    outside = design.box(length, width, height, name="Box", colour="Teal")
    design.fillet(outside.edges.parallel_to("Z"), 2 * wall)
    design.subtract(outside, design.box(length - 2 * wall, width - 2 * wall, height, at=(wall, wall, wall)))
    posts: List[quillet.Component] = []
    for x in (wall + 4, length - wall - 4):
        for y in (wall + 4, width - wall - 4):
            post = design.cylinder(4.5, height - 3 * wall, at=(x, y, wall / 2))
            design.subtract(post, design.cylinder(1.25, height, at=(x, y, 2 * wall)))
            posts.append(post)
    design.join(outside, posts)

    lid = design.box(length, width, wall, at=(0, width + 10, 0), name="Lid", colour="Grey")
    design.fillet(lid.edges.parallel_to("Z"), 2 * wall)
    rim = wall + chosen.gap
    design.join(lid, design.box(length - 2 * rim, width - 2 * rim, 2 * wall, at=(rim, width + 10 + rim, 0)))

assert outside.body is not None and lid.body is not None
room = (length - 2 * wall) * (width - 2 * wall) * (height - wall)
print(f"box {outside.body.volume:.0f} mm3, lid {lid.body.volume:.0f} mm3, room {room:.0f} mm3")
document.export(chosen.file)
