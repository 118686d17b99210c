#!/usr/bin/python3
"""Times the way from a STEP file to its first picture, 1280 x 720, as whole headless runs, and prints ratios.

Quillet runs cold (its import cache emptied) and warm (seen before). The floor is a program of the bare kernel that reads
and meshes the file, in parallel, and draws nothing. Any other program that draws a file without a window can run beside
them: --peer takes its command, in which {file} and {picture} stand for the paths. The smallest time of the rounds counts.

    Benchmarks/picture.py [--rounds N] [--build DIR] [--peer COMMAND]... FILE...
"""

import argparse
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile
import time


def timed(command):
    start = time.perf_counter()
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    elapsed = time.perf_counter() - start
    if result.returncode != 0:
        sys.exit(f"{command[0]} failed ({result.returncode}):\n{result.stdout}{result.stderr}")
    return elapsed


def measure(file, binaries, peers, rounds, scratch):
    picture, profile = scratch / "picture.png", scratch / "profile"
    quillet = [binaries / "quillet", "--headless", "--profile-dir", profile, file,
               "--command", f'Commands.Start SaveAsImageCommand Path="{picture}" Width=1280 Height=720']
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
    floor = min(times["the kernel, no picture"])
    print(file)
    for name, values in times.items():
        print(f"  {name:24}{1000 * min(values):9.1f} ms{min(values) / floor:8.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="+", type=pathlib.Path)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("--peer", action="append", default=[])
    arguments = parser.parse_args()
    binaries = pathlib.Path(arguments.build) / "root/bin"
    with tempfile.TemporaryDirectory() as scratch:
        for file in arguments.files:
            measure(file, binaries, arguments.peer, arguments.rounds, pathlib.Path(scratch))


if __name__ == "__main__":
    main()
