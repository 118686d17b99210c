#!/usr/bin/python3
"""Times what scripts wait for, in Quillet's module outside of the program, and prints ratios side by side.

Imports alternate with those of a small module of the system's Python, so that both see the same machine. The other
figures are of one process: making boxes by lines and as objects; and asking 10,000 faces for what they are.

    Benchmarks/scripting.py [--rounds N] [--boxes N] [--build DIR]
"""

import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

INSIDE = """
import sys, time
import quillet
from quillet import design
import Design

def timed(work):
    start = time.perf_counter()
    work()
    return time.perf_counter() - start

def make(function):
    for i in range(boxes):
        function(1, 1, 1, (2 * i, 0, 0))

boxes = int(sys.argv[1])
quillet.new_document()
Design.Box(1, 1, 1)    # loads the kernel
for name, function in (("lines", Design.Box), ("objects", design.box), ("lines", Design.Box), ("objects", design.box)):
    quillet.new_document()
    print(f"boxes by {name} {timed(lambda: make(function))}")

# A plate with so many pins on it that it has 10,000 faces and more.
quillet.new_document()
rows = 45
pins = design.box(1, 1, 2)
grid = [pins, *design.pattern(pins, "X", 2, rows, "Y", 2, rows)]
faces = []
print(f"faces asked for {timed(lambda: [faces.extend(pin.faces) for pin in grid])}")
print(f"faces measured {timed(lambda: [face.area for face in faces])}")

def queries():
    for face in faces:
        face.kind, face.area, face.centre, face.normal, face.edges, face.neighbours

print(f"faces {len(faces)}")
print(f"queries {timed(queries)}")
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=10)
    parser.add_argument("--boxes", type=int, default=1000)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as profile:
        environment = {**os.environ, "PYTHONPATH": arguments.build + "/root/lib/python", "QUILLET_PROFILE_DIR": profile}

        def run(code, *words):
            return subprocess.run(["/usr/bin/python3", "-c", code, *words], env=environment, check=True,
                                  capture_output=True, text=True).stdout

        timer = "import time; start = time.perf_counter(); import {0}; print(time.perf_counter() - start)"
        imports = {"quillet": [], "asyncio": []}
        for _ in range(arguments.rounds):
            for name, times in imports.items():
                times.append(1000 * float(run(timer.format(name))))
        floor = min(imports["asyncio"])
        print(f"{'import':20} {'min ms':>8} {'median':>8} {'x asyncio':>10}")
        for name, times in imports.items():
            print(f"{name:20} {min(times):8.1f} {statistics.median(times):8.1f} {min(times) / floor:10.2f}")

        told = {}
        for line in run(INSIDE, str(arguments.boxes)).splitlines():
            name, value = line.rsplit(" ", 1)
            told.setdefault(name, []).append(float(value))
        best = {name: min(values) for name, values in told.items()}
        lines, objects = best["boxes by lines"], best["boxes by objects"]
        print(f"{arguments.boxes} boxes: {1000 * lines:.0f} ms by lines, {1000 * objects:.0f} ms as objects, "
              f"{objects / lines:.2f} times")
        count = best["faces"]
        first = best["faces asked for"] + best["faces measured"]
        print(f"{count:.0f} faces: known after {1000 * first:.0f} ms; then {6 * count / best['queries']:,.0f} queries a second, "
              f"{7 * count / (first + best['queries']):,.0f} with all of it")
    return 0


if __name__ == "__main__":
    sys.exit(main())
