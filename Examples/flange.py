"""A flange with options: a disc with a bore, a hub, and holes on a circle.

    python3 Examples/flange.py --bolts 8 --bore 40 flange.step
"""

import argparse
import math
from typing import Optional, Sequence

import quillet
from quillet import design


def flange(diameter: float, thickness: float, bore: float, bolts: int, bolt: float,
           hub: float) -> quillet.Component:
    """Makes a flange about the Z axis, on the plane Z = 0."""
    disc = design.cylinder(diameter / 2, thickness, name="Flange")
    if hub > 0:
        design.join(disc, design.cylinder(bore / 2 + 8, thickness + hub))
    design.subtract(disc, design.cylinder(bore / 2, thickness + hub))
    if bolts > 0:
        circle = (diameter / 2 + bore / 2 + 8) / 2
        hole = design.cylinder(bolt / 2, thickness, at=(circle, 0, 0))
        holes = [hole, *design.circular_pattern(hole, "Z", bolts)] if bolts > 1 else [hole]
        design.subtract(disc, holes)
    design.chamfer(disc.edges.round(diameter / 2), 1)
    return disc


def main(arguments: Optional[Sequence[str]] = None) -> None:
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("file", help="what is written: .step, .iges, .brep, .stl, .obj, .gltf, .glb or .vlra")
    options.add_argument("--diameter", type=float, default=120)
    options.add_argument("--thickness", type=float, default=12)
    options.add_argument("--bore", type=float, default=40)
    options.add_argument("--bolts", type=int, default=6)
    options.add_argument("--bolt", type=float, default=9, help="the diameter of the holes")
    options.add_argument("--hub", type=float, default=15, help="its height; 0 for none")
    chosen = options.parse_args(arguments)

    document = quillet.new_document()
    with quillet.transaction("Flange"):
        made = flange(chosen.diameter, chosen.thickness, chosen.bore, chosen.bolts, chosen.bolt, chosen.hub)
    holes = made.faces.of_kind("cylinder").round(chosen.bolt / 2)
    assert made.body is not None
    print(f"{len(holes)} holes, {made.body.volume / 1000:.1f} cm3, {7.85e-6 * made.body.volume:.2f} kg of steel")
    if math.isclose(made.body.volume, 0):
        raise SystemExit("nothing is left of it")
    if chosen.file.endswith(".vlra"):
        document.save_as(chosen.file)
    else:
        document.export(chosen.file)


if __name__ == "__main__":
    main()
