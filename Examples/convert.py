"""Converts all CAD files of a folder, and writes a report as CSV.

    python3 Examples/convert.py parts/ converted/ --format glb

One that can't be read is in the report with the reason, and keeps nothing from the others; the exit code is 1 then.
"""

import argparse
import csv
import pathlib
import sys
import time

import quillet

READ = {".step", ".stp", ".iges", ".igs", ".brep", ".stl", ".obj", ".gltf", ".glb", ".vlra"}

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("source", type=pathlib.Path)
options.add_argument("target", type=pathlib.Path)
options.add_argument("--format", default="glb")
chosen = options.parse_args()

chosen.target.mkdir(parents=True, exist_ok=True)
failed = 0
with open(chosen.target / "report.csv", "w", newline="", encoding="utf-8") as file:
    report = csv.writer(file)
    report.writerow(["file", "result", "parts", "seconds", "reason"])
    for source in sorted(path for path in chosen.source.iterdir() if path.suffix.lower() in READ):
        start = time.perf_counter()
        target = chosen.target / (source.stem + "." + chosen.format)
        try:
            document = quillet.open_document(source)
            parts = sum(1 for part in quillet.model().walk() if part.body)
            document.export(target)
            document.close(discard=True)
            report.writerow([source.name, target.name, parts, f"{time.perf_counter() - start:.2f}", ""])
        except quillet.CommandError as error:
            failed += 1
            report.writerow([source.name, "", "", f"{time.perf_counter() - start:.2f}", str(error)])
            print(f"{source.name}: {error}", file=sys.stderr)
print(f"{failed} failed")
sys.exit(1 if failed else 0)
