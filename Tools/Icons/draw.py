#!/usr/bin/python3
"""Writes the SVG sources of all pictures from their drawings.

    draw.py           writes the files that differ, removes those without a drawing
    draw.py --check   writes nothing; fails when a file on disk is not what its drawing says

To add an icon: draw it in the module of its subject, run this, name it in the folder's Icons/pictures.txt, and give
it a row in the catalogue (ResourcesTable.h). The build makes the PNG files; the tests say whether it can be told
apart from the others and read on light and dark.
"""

import argparse
import pathlib
import sys

from pen import PICTURES
import camera  # noqa: F401  (each of these modules draws its pictures when it is read)
import common  # noqa: F401
import display  # noqa: F401
import documents  # noqa: F401
import measure  # noqa: F401
import menus  # noqa: F401
import solids  # noqa: F401

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    check = parser.parse_args().check
    wanted = {ROOT / path: drawing.svg() for path, drawing in PICTURES.items()}
    folders = [ROOT / home / "Resources" / "Icons" for home in ("UI/Commands", "UI/Design")]
    stale = [path for folder in folders for path in folder.rglob("*.svg") if path not in wanted]
    changed = [path for path, text in wanted.items() if not path.exists() or path.read_text() != text]
    if check:
        for path in stale + changed:
            print(f"{path}: not what its drawing says; run draw.py", file=sys.stderr)
        return 1 if stale or changed else 0
    for path in stale:
        path.unlink()
    for path in changed:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(wanted[path])
    print(f"{len(wanted)} pictures, {len(changed)} written, {len(stale)} removed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
