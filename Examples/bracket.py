"""A parametric bracket: two plates at a right angle, with a rib, rounded corners and holes.

    python3 Examples/bracket.py bracket.step --width 60 --radius 6
"""

import argparse

import quillet
from quillet import design

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("file")
options.add_argument("--width", type=float, default=50)
options.add_argument("--length", type=float, default=70)
options.add_argument("--height", type=float, default=60)
options.add_argument("--thickness", type=float, default=6)
options.add_argument("--radius", type=float, default=8, help="of the corners, and of the bend")
chosen = options.parse_args()
width, length, height, thick = chosen.width, chosen.length, chosen.height, chosen.thickness

document = quillet.new_document()
with quillet.transaction("Bracket"):
    foot = design.box(length, width, thick, name="Bracket")
    design.join(foot, design.box(thick, width, height))

    # The bend is the one edge where the two plates meet from within.
    bend = foot.edges.parallel_to("Y").near((thick, width / 2, thick))[0]
    design.fillet(bend, chosen.radius)

    # The outer corners of both plates: what is upright at the far end, and lies along X at the top.
    corners = foot.edges.parallel_to("Z").farthest("X") + foot.edges.parallel_to("X").farthest("Z")
    try:
        design.fillet(corners, chosen.radius)
    except quillet.CommandError as error:
        # A radius for which there is no room costs the rounding alone.
        print(f"sharp corners: {error}")

    holes = [design.cylinder(3.3, thick, at=(length - 15, side, 0)) for side in (width / 4, 3 * width / 4)]
    holes += [design.cylinder(3.3, thick, at=(0, side, height - 15), direction="X")
              for side in (width / 4, 3 * width / 4)]
    design.subtract(foot, holes)
    foot.colour = "#8e949b"

assert foot.body is not None
print(f"{len(foot.faces)} faces, {len(foot.faces.of_kind('cylinder'))} of them round, {foot.body.volume:.0f} mm3")
document.export(chosen.file)
