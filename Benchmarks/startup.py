#!/usr/bin/python3
"""Times the start of Quillet to its first text line, headless, beside two floors, and prints ratios.

The floors: a program that only loads the kernel, and the system's Python interpreter. The runs alternate, so that all
see the same machine; minimum and median of the rounds are printed.

    Benchmarks/startup.py [--rounds N] [--build DIR]
"""

import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=20)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    arguments = parser.parse_args()
    binaries = pathlib.Path(arguments.build) / "root/bin"
    with tempfile.TemporaryDirectory() as profile:
        sides = {
            "kernel program": [str(binaries / "kernel_floor")],
            "python3": ["/usr/bin/python3", "-c", "pass"],
            "quillet --version": [str(binaries / "quillet"), "--version"],
            "quillet, one line": [str(binaries / "quillet"), "--headless", "--profile-dir", profile,
                                  "--command", "Sleeper.Sleep 0"],
        }
        times = {name: [] for name in sides}
        for _ in range(arguments.rounds):
            for name, command in sides.items():
                start = time.perf_counter()
                subprocess.run(command, capture_output=True, check=False)
                times[name].append(1000 * (time.perf_counter() - start))
    floor = min(times["kernel program"])
    print(f"{'':20} {'min ms':>8} {'median':>8} {'x kernel':>9}")
    for name, values in times.items():
        print(f"{name:20} {min(values):8.1f} {statistics.median(values):8.1f} {min(values) / floor:9.2f}")


if __name__ == "__main__":
    main()
