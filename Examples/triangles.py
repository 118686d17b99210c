"""Reads the triangles of a model as buffers: how many there are, and how far their area is from the exact one.

    python3 Examples/triangles.py part.step

Where numpy is installed, it takes the buffers without copying them.
"""

import argparse
import importlib.util
import math
from typing import Any, Dict

import quillet

numpy: Any = importlib.import_module("numpy") if importlib.util.find_spec("numpy") else None

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("model")
chosen = options.parse_args()


def area_of(mesh: Dict[str, memoryview]) -> float:
    if numpy is not None:
        corners = numpy.asarray(mesh["positions"])[numpy.asarray(mesh["triangles"])]
        across = numpy.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
        return float(numpy.linalg.norm(across, axis=1).sum() / 2)
    points: Any = mesh["positions"].tolist()
    triangles: Any = mesh["triangles"].tolist()
    total = 0.0
    for a, b, c in triangles:
        one = [points[b][i] - points[a][i] for i in range(3)]
        two = [points[c][i] - points[a][i] for i in range(3)]
        total += math.hypot(one[1] * two[2] - one[2] * two[1], one[2] * two[0] - one[0] * two[2],
                            one[0] * two[1] - one[1] * two[0]) / 2
    return total


quillet.open_document(chosen.model)
for part in quillet.model().walk():
    if part.body:
        mesh = part.body.mesh
        area = area_of(mesh)
        print(f"{part.path}: {len(mesh['triangles'])} triangles, {area:.2f} mm2, "
              f"{100 * abs(area / part.body.area - 1):.3f} % from the exact area")
