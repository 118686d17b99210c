#!/usr/bin/python3
"""Times the way from a STEP file to its first picture, 1280 x 720, as whole headless runs, and prints ratios.

Quillet runs cold (its import cache emptied) and warm (seen before). The floor is a program of the bare kernel that reads
and meshes the file, in parallel, and draws nothing. Any other program that draws a file without a window can run beside
them: --peer takes its command, in which {file} and {picture} stand for the paths. The smallest time of the rounds counts;
beside it stands the smallest processor time of the program, without the worker that reads a file, which other programs on the
machine change least. --others adds what else is written of a file that was seen before: a picture with everything as shown, a
turntable of 12 pictures, and drawings without hidden lines. With --steps, it is shown
where the time of a first picture goes (bench_first_picture).

    Benchmarks/picture.py [--rounds N] [--build DIR] [--steps] [--others]
                          [--peer COMMAND]... FILE...
"""

import argparse
import pathlib
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import time


def timed(command):
    before, start = resource.getrusage(resource.RUSAGE_CHILDREN), time.perf_counter()
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    elapsed, after = time.perf_counter() - start, resource.getrusage(resource.RUSAGE_CHILDREN)
    work = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    if result.returncode != 0:
        sys.exit(f"{command[0]} failed ({result.returncode}):\n{result.stdout}{result.stderr}")
    return elapsed, work


def measure(file, binaries, peers, rounds, others, scratch):
    picture, profile = scratch / "picture.png", scratch / "profile"
    opened = [binaries / "quillet", "--headless", "--profile-dir", profile, file, "--command"]
    quillet = [*opened, f'Commands.Start SaveAsImageCommand Path="{picture}" Width=1280 Height=720']
    more = {"as shown": f'Commands.Start SaveAsImageCommand Path="{picture}" Width=1280 Height=720 AsShown=1',
            "turntable of 12": f'Camera.Turntable "{picture}" 12 1280x720',
            "drawing, SVG": f'Commands.Start SaveDrawingCommand Path="{scratch}/drawing.svg"',
            "drawing, PDF": f'Commands.Start SaveDrawingCommand Path="{scratch}/drawing.pdf"'} if others else {}
    sides = {"the kernel, no picture": [binaries / "kernel_floor", "--parallel", file, scratch / "floor.stl"]}
    for number, peer in enumerate(peers, 1):
        sides[f"peer {number}"] = [word.format(file=file, picture=picture) for word in shlex.split(peer)]
    times = {name: [] for name in [*sides, "quillet, cold", "quillet, warm"]}
    for _ in range(rounds):
        for name, command in sides.items():
            times[name].append(timed(command))
        shutil.rmtree(profile, ignore_errors=True)
        for name in ("quillet, cold", "quillet, warm"):
            picture.unlink(missing_ok=True)
            times[name].append(timed(quillet))
            if not picture.exists():
                sys.exit(f"No picture was made of {file}.")
        for name, line in more.items():
            times.setdefault(name, []).append(timed([*opened, line]))
    def least(name):
        return [min(values) for values in zip(*times[name])]

    floor = least("the kernel, no picture")
    print(file)
    for name in times:
        elapsed, work = least(name)
        print(f"  {name:24}{1000 * elapsed:9.1f} ms{elapsed / floor[0]:8.2f}"
              f"{1000 * work:12.1f} ms of processors{work / floor[1]:8.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="+", type=pathlib.Path)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("--steps", action="store_true")
    parser.add_argument("--others", action="store_true")
    parser.add_argument("--peer", action="append", default=[])
    arguments = parser.parse_args()
    binaries = pathlib.Path(arguments.build) / "root/bin"
    with tempfile.TemporaryDirectory() as scratch:
        for file in arguments.files:
            if arguments.steps:
                subprocess.run([binaries / "bench_first_picture", file], check=True)
            measure(file, binaries, arguments.peer, arguments.rounds, arguments.others, pathlib.Path(scratch))


if __name__ == "__main__":
    main()
