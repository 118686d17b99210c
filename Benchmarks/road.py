#!/usr/bin/python3
"""Opens STEP, glTF or OBJ files and exports STL, Quillet beside the bare kernel, and prints ratios.

Each round runs the kernel's program serial and parallel, then Quillet cold (its import cache emptied) and warm (seen
before), one after the other, so that all see the same machine; the smallest time of the rounds counts.

    Benchmarks/road.py [--rounds N] [--build DIR] FILE...
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading
import time


def peak_of_family(process, result):
    """Samples the summed memory (Pss, which counts shared pages once) of a process and its children."""
    peak = 0
    while process.poll() is None:
        total = 0
        for pid in family(process.pid):
            try:
                with open(f"/proc/{pid}/smaps_rollup") as rollup:
                    total += next(int(line.split()[1]) for line in rollup if line.startswith("Pss:"))
            except (OSError, StopIteration):
                pass
        peak = max(peak, total)
        time.sleep(0.02)
    result.append(peak)


def family(pid):
    yield pid
    try:
        for task in os.listdir(f"/proc/{pid}/task"):
            with open(f"/proc/{pid}/task/{task}/children") as children:
                for child in children.read().split():
                    yield from family(int(child))
    except OSError:
        pass


def timed(command):
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    memory = []
    watcher = threading.Thread(target=peak_of_family, args=(process, memory))
    watcher.start()
    output, errors = process.communicate()
    elapsed = time.perf_counter() - start
    watcher.join()
    if process.returncode != 0:
        sys.exit(f"{command[0]} failed ({process.returncode}):\n{output}{errors}")
    return elapsed, memory[0], output


def triangles_of(stl):
    with open(stl, "rb") as file:
        file.seek(80)
        return int.from_bytes(file.read(4), "little")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("files", nargs="+")
    arguments = parser.parse_args()
    binaries = pathlib.Path(arguments.build) / "root/bin"

    print(f"{'file':34} {'side':16} {'seconds':>8} {'x serial':>9} {'x parallel':>10} {'MiB':>7} {'x mem':>6} {'triangles':>10}")
    for file in arguments.files:
        best = {}
        with tempfile.TemporaryDirectory() as scratch:
            stl = os.path.join(scratch, "out.stl")
            profile = os.path.join(scratch, "profile")
            lines = [file, "--command", f'Asset.Export "{stl}"']
            quillet = [str(binaries / "quillet"), "--headless", "--profile-dir", profile, *lines]
            triangles = file.endswith((".glb", ".gltf", ".obj"))
            floor = str(binaries / ("kernel_floor_mesh" if triangles else "kernel_floor"))
            sides = [
                ("kernel serial", [floor, file, stl]),
                ("kernel parallel", [floor, "--parallel", file, stl]),
                ("quillet cold", quillet),
                ("quillet warm", quillet),
            ]
            for _ in range(arguments.rounds):
                shutil.rmtree(profile, ignore_errors=True)
                for name, command in sides:
                    # All write a new file: who replaces one with care waits for the disk.
                    pathlib.Path(stl).unlink(missing_ok=True)
                    seconds, memory, _ = timed(command)
                    known = best.get(name, (float("inf"), float("inf"), 0))
                    best[name] = (min(known[0], seconds), min(known[1], memory), triangles_of(stl))
        serial, parallel = best["kernel serial"], best["kernel parallel"]
        for name, (seconds, memory, count) in best.items():
            beside = parallel if "parallel" in name or "quillet" in name else serial
            print(f"{os.path.basename(file)[:34]:34} {name:16} {seconds:8.3f} {seconds / serial[0]:9.2f} "
                  f"{seconds / parallel[0]:10.2f} {memory / 1024:7.0f} {memory / beside[1]:6.2f} {count:10}")
        print(f"{'':34} warm is {best['quillet cold'][0] / best['quillet warm'][0]:.0f} times faster than cold as whole runs")


if __name__ == "__main__":
    main()
