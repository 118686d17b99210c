"""A table of the round holes of all parts: diameter, depth, direction and place.

    python3 Examples/holes.py part.step
"""

import argparse
import math

import quillet


def goes_around(rim: quillet.Edge) -> bool:
    return rim.radius is not None and abs(rim.length - 2 * math.pi * rim.radius) < 1e-6


options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("model")
chosen = options.parse_args()

quillet.open_document(chosen.model)
count = 0
for part in quillet.model().walk():
    if not part.body:
        continue
    for face in part.faces.of_kind("cylinder"):
        # A hole has a rim at each end, all around.
        around = face.edges.of_kind("circle").where(goes_around)
        if not face.concave or len(around) < 2 or face.axis is None or face.radius is None:
            continue
        count += 1
        depth = quillet.measure.distance(around[0], around[1])
        direction = ", ".join(f"{value:.2f}" for value in face.axis.direction)
        place = ", ".join(f"{value:.2f}" for value in around[0].centre)
        print(f"{part.path}/{face.path.rsplit('/')[-1]}: diameter {2 * face.radius:.2f}, depth {depth:.2f}, "
              f"along ({direction}), from ({place})")
print(f"{count} holes")
