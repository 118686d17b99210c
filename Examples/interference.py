"""Finds parts of an assembly that are in each other's way, and how much they overlap.

    python3 Examples/interference.py assembly.step

The exit code is 1 if there are any.
"""

import argparse
import itertools
import sys
from typing import Tuple

import quillet
from quillet import design

LEAST = 1e-3  # mm3

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("model")
chosen = options.parse_args()


class Tried(Exception):
    """What was only to be tried is taken back."""


def overlap(one: quillet.Component, other: quillet.Component) -> float:
    volume = 0.0
    try:
        with quillet.transaction("Overlap"):
            both = design.intersect(one, other)
            volume = both.body.volume if both.body else 0.0
            raise Tried
    except (Tried, quillet.CommandError):
        # They have nothing in common, or it was taken back.
        return volume


def boxes_meet(one: quillet.Component, other: quillet.Component) -> bool:
    a, b = one.bounds, other.bounds
    return bool(a and b) and all(a[0][i] < b[1][i] and b[0][i] < a[1][i] for i in range(3))  # type: ignore[index]


quillet.open_document(chosen.model)
parts = [part for part in quillet.model().walk() if part.body and part.body.closed]
found = 0
pairs: Tuple[quillet.Component, quillet.Component]
for pairs in itertools.combinations(parts, 2):
    # Two whose boxes don't meet can't overlap, which is known at once.
    if boxes_meet(*pairs):
        volume = overlap(*pairs)
        if volume > LEAST:
            found += 1
            print(f"{pairs[0].path} and {pairs[1].path}: {volume:.3f} mm3")
print(f"{found} of {len(parts) * (len(parts) - 1) // 2} pairs overlap")
sys.exit(1 if found else 0)
