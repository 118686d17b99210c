"""Compares two versions of a model, part by part: what is new, gone, moved, or has another shape.

    python3 Examples/compare.py old.step new.step

The exit code is 1 if they differ.
"""

import argparse
import sys
from typing import Dict, NamedTuple, Optional, Tuple

import quillet


class Facts(NamedTuple):
    volume: Optional[float]
    area: Optional[float]
    faces: int
    edges: int
    centre: Tuple[float, ...]


def facts(path: str) -> Dict[str, Facts]:
    document = quillet.open_document(path)
    found = {}
    for part in quillet.model().walk():
        body = part.body
        if body:
            volume = round(body.volume, 3) if body.closed else None
            found[part.path] = Facts(volume, round(body.area, 3), len(body.faces), len(body.edges),
                                     tuple(round(value, 3) for value in body.centre))
    document.close(discard=True)
    return found


options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("old")
options.add_argument("new")
chosen = options.parse_args()
old, new = facts(chosen.old), facts(chosen.new)
differences = 0
for path in sorted(old.keys() | new.keys()):
    if path not in new:
        text = "gone"
    elif path not in old:
        text = "new"
    else:
        text = ", ".join(f"{field} {before} -> {after}" for field, before, after
                         in zip(Facts._fields, old[path], new[path]) if before != after)
    if text:
        differences += 1
        print(f"{path}: {text}")
print(f"{differences} of {len(old.keys() | new.keys())} parts differ")
sys.exit(1 if differences else 0)
