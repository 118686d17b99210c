#!/usr/bin/python3
"""Opens STEP, glTF or OBJ files and exports STL, Quillet beside the bare kernel, and prints ratios.

Each round runs the kernel's program serial and parallel, then Quillet cold (its import cache emptied) and warm (seen
before), one after the other, so that all see the same machine; the smallest time of the rounds counts. Large STEP files are
also read as a whole, and a line tells how the work of the shares is divided: the processor time of the readers and of what
nobody else can do meanwhile, and what follows for more processors. Then a copy is opened that was written again with other numbers and one point
moved ("quillet again"), of which the program has seen all parts but one.

Any other program that reads the file and writes an STL file can run beside:

    Benchmarks/road.py [--rounds N] [--build DIR] [--beside "PROGRAM {file} {stl}"] FILE...
"""

import argparse
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading
import time


SHARED = 4 << 20  # Bytes of a file above which it is read in shares.
READER = 3  # The depth of a share's reader: below the program, its worker and what divides the file.
TICKS = os.sysconf("SC_CLK_TCK")


def peak_of_family(process, result, work):
    """Samples the summed memory (Pss, which counts shared pages once) of a process and its children, and the processor time of
    each by its number, with its depth."""
    peak = 0
    while process.poll() is None:
        total = 0
        for pid, depth in family(process.pid):
            try:
                with open(f"/proc/{pid}/stat") as stat:
                    fields = stat.read().rsplit(")", 1)[1].split()
                work[pid] = depth, (int(fields[11]) + int(fields[12])) / TICKS
                with open(f"/proc/{pid}/smaps_rollup") as rollup:
                    total += next(int(line.split()[1]) for line in rollup if line.startswith("Pss:"))
            except (OSError, StopIteration):
                pass
        peak = max(peak, total)
        time.sleep(0.02)
    result.append(peak)


def family(pid, depth=0):
    yield pid, depth
    try:
        for task in os.listdir(f"/proc/{pid}/task"):
            with open(f"/proc/{pid}/task/{task}/children") as children:
                for child in children.read().split():
                    yield from family(int(child), depth + 1)
    except OSError:
        pass


def timed(command, shares=None):
    start = time.perf_counter()
    environment = dict(os.environ, QUILLET_SHARES=shares) if shares else None
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=environment)
    memory, work = [], {}
    watcher = threading.Thread(target=peak_of_family, args=(process, memory, work))
    watcher.start()
    output, errors = process.communicate()
    elapsed = time.perf_counter() - start
    watcher.join()
    if process.returncode != 0:
        sys.exit(f"{command[0]} failed ({process.returncode}):\n{output}{errors}")
    return elapsed, memory[0], work


def divided(work):
    """The processor time of the shares' readers, the largest first, and of all other processes."""
    return (sorted((seconds for depth, seconds in work.values() if depth == READER), reverse=True),
            sum(seconds for depth, seconds in work.values() if depth < READER))


def balance(work):
    """How the shares' readers divide the work, and what that comes to on more processors."""
    readers, alone = divided(work)
    if not readers:
        return None
    together = sum(readers)
    computed = ", ".join(f"{alone + max(together / n, readers[0]):.2f} on {n}" for n in (2, 4, 8, 16))
    return (f"{len(readers)} shares of {together:.2f} s of processor time, the largest {readers[0]:.2f}, and {alone:.2f} of one process "
            f"({100 * together / (together + alone):.0f} % in shares); computed: {computed} processors")


def of_the_change(works):
    """The same by processor time, which a busy machine leaves alone, and how much of it is for the part that changed."""
    if not {"quillet cold", "quillet again"} <= works.keys():
        return ""
    (first, first_rest), (again, rest) = divided(works["quillet cold"]), divided(works["quillet again"])
    whole = sum(first) + first_rest
    return (f", by processor time {(sum(again) + rest) / whole:.2f}: {sum(again) / whole:.2f} for the part that changed "
            f"and {rest / whole:.2f} for all else")


def written_again(file, folder):
    """A copy as a CAD writes it after a change: with other numbers, and one point moved."""
    text = pathlib.Path(file).read_bytes()
    points = list(re.finditer(rb"CARTESIAN_POINT\s*\('[^']*',\(-?\d+\.\d+", text))
    if points:
        end = points[len(points) // 2].end()
        text = text[:end] + b"1" + text[end:]
    copy = os.path.join(folder, "again.step")
    pathlib.Path(copy).write_bytes(re.sub(rb"#(\d+)", rb"#1\g<1>", text))
    return copy


def triangles_of(stl):
    with open(stl, "rb") as file:
        file.seek(80)
        return int.from_bytes(file.read(4), "little")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("--beside", action="append", default=[], metavar="COMMAND")
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
                ("quillet whole", quillet),
                ("quillet cold", quillet),
                ("quillet warm", quillet),
            ]
            if os.path.getsize(file) > SHARED:
                sides.append(("quillet again", [quillet[0], *quillet[1:4], written_again(file, scratch), *lines[1:]]))
            if not file.endswith((".stp", ".step")):
                del sides[2]
            for other in arguments.beside:
                command = [word.format(file=file, stl=stl) for word in shlex.split(other)]
                sides.append((os.path.basename(command[0]), command))
            shares, works = None, {}
            for _ in range(arguments.rounds):
                for name, command in sides:
                    if name not in ("quillet warm", "quillet again"):
                        shutil.rmtree(profile, ignore_errors=True)
                    # All write a new file: who replaces one with care waits for the disk.
                    pathlib.Path(stl).unlink(missing_ok=True)
                    seconds, memory, work = timed(command, "never" if name == "quillet whole" else None)
                    if name == "quillet cold":
                        shares = balance(work) or shares
                    if work and (name not in works or sum(s for _, s in work.values()) < sum(s for _, s in works[name].values())):
                        works[name] = work
                    known = best.get(name, (float("inf"), float("inf"), 0))
                    best[name] = (min(known[0], seconds), min(known[1], memory), triangles_of(stl))
        serial, parallel = best["kernel serial"], best["kernel parallel"]
        for name, (seconds, memory, count) in best.items():
            beside = parallel if "parallel" in name or "quillet" in name else serial
            print(f"{os.path.basename(file)[:34]:34} {name:16} {seconds:8.3f} {seconds / serial[0]:9.2f} "
                  f"{seconds / parallel[0]:10.2f} {memory / 1024:7.0f} {memory / beside[1]:6.2f} {count:10}")
        if shares:
            print(f"{'':34} {shares}")
        if "quillet again" in best:
            print(f"{'':34} written again takes {best['quillet again'][0] / best['quillet cold'][0]:.2f} of the first time"
                  + of_the_change(works))
        print(f"{'':34} warm is {best['quillet cold'][0] / best['quillet warm'][0]:.0f} times faster than cold as whole runs")


if __name__ == "__main__":
    main()
