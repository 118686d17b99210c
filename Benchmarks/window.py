#!/usr/bin/python3
"""Times the start of Quillet to its window on a screen of its own, beside the headless start, and prints ratios.

Needs Xvfb and xdotool. The runs alternate, so that all see the same machine; minimum and median of the rounds are
printed. The window counts as there when the window system shows it.

    Benchmarks/window.py [--rounds N] [--build DIR] [--profile DIR]
"""

import argparse
import contextlib
import os
import pathlib
import statistics
import subprocess
import tempfile
import time


@contextlib.contextmanager
def screen():
    """A display of its own; gives its name."""
    read, write = os.pipe()
    # A server that starts anew when its last window has gone refuses the next one now and then.
    server = subprocess.Popen(["Xvfb", "-noreset", "-displayfd", str(write), "-screen", "0", "1400x900x24"],
                              pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        with os.fdopen(read) as pipe:
            yield ":" + pipe.readline().strip()
    finally:
        server.terminate()
        server.wait()


def to_window(command, environment):
    """Milliseconds until a window of the program is visible."""
    start = time.perf_counter()
    program = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        while program.poll() is None:
            if subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Quillet"], env=environment,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False).returncode == 0:
                return 1000 * (time.perf_counter() - start)
        raise SystemExit("the program ended before it had a window")
    finally:
        program.terminate()
        program.wait()


def to_end(command, environment):
    start = time.perf_counter()
    subprocess.run(command, env=environment, capture_output=True, check=True)
    return 1000 * (time.perf_counter() - start)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=10)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("--profile", help="a folder with settings; a fresh one if it is left out")
    arguments = parser.parse_args()
    quillet = str(pathlib.Path(arguments.build) / "root/bin/quillet")
    with screen() as display, tempfile.TemporaryDirectory() as fresh:
        environment = {**os.environ, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb"}
        profile = ["--profile-dir", arguments.profile or fresh]
        sides = {
            "headless, one line": lambda: to_end([quillet, "--headless", *profile, "--command", "Sleeper.Sleep 0"],
                                                 environment),
            "window": lambda: to_window([quillet, *profile], environment),
        }
        times = {name: [] for name in sides}
        for _ in range(arguments.rounds):
            for name, run in sides.items():
                times[name].append(run())
    floor = min(times["headless, one line"])
    print(f"{'':20} {'min ms':>8} {'median':>8} {'x headless':>11}")
    for name, values in times.items():
        print(f"{name:20} {min(values):8.1f} {statistics.median(values):8.1f} {min(values) / floor:11.2f}")


if __name__ == "__main__":
    main()
