"""The mass and the centre of mass of an assembly, by a table of densities.

    python3 Examples/mass.py assembly.step --density 7.85 --of Plate=2.70 --of Bolt=8.0
"""

import argparse
from typing import Dict

import quillet

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("model")
options.add_argument("--density", type=float, default=7.85, help="in g/cm3, of all parts that aren't named")
options.add_argument("--of", action="append", default=[], metavar="NAME=DENSITY")
chosen = options.parse_args()
densities: Dict[str, float] = {name: float(density) for name, density in (each.split("=") for each in chosen.of)}

quillet.open_document(chosen.model)
whole, moment = 0.0, [0.0, 0.0, 0.0]
for part in quillet.model().walk():
    if not part.body:
        continue
    if not part.body.closed:
        print(f"{part.path}: not closed, so that it has no volume")
        continue
    # What holds for an assembly holds for its parts.
    names = [step.rsplit(":", 1)[0] for step in part.path.split("/")]
    density = next((densities[name] for name in reversed(names) if name in densities), chosen.density)
    mass = part.body.volume / 1000 * density
    print(f"{part.path}: {mass:.2f} g")
    whole += mass
    moment = [sum_ + mass * value for sum_, value in zip(moment, part.body.centre)]
if whole:
    print(f"together {whole:.2f} g, centre of mass " + ", ".join(f"{value / whole:.3f}" for value in moment))
