#!/usr/bin/python3
"""Times the start of Quillet to its window on a screen of its own, beside the headless start, and prints ratios.

Needs Xvfb. The runs alternate, so that all see the same machine; minimum and median of the rounds are printed. The
window counts as there when the window system shows it. With --recovery-files the start beside so many files that runs
which ended badly have left is timed as well.

    Benchmarks/window.py [--rounds N] [--build DIR] [--profile DIR] [--recovery-files N]
"""

import argparse
import contextlib
import ctypes
import os
import pathlib
import shutil
import statistics
import subprocess
import tempfile
import time
import uuid


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


class Shown:
    """Hears of windows that are shown, without asking again and again, which would take longer than what is timed."""

    SUBSTRUCTURE_NOTIFY, MAP_NOTIFY = 1 << 19, 19

    def __init__(self, display):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x11.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
        self.x11.XNextEvent.argtypes = self.x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
        self.display = self.x11.XOpenDisplay(display.encode())
        root = self.x11.XDefaultRootWindow(self.display)
        self.x11.XSelectInput(self.display, root, self.SUBSTRUCTURE_NOTIFY)
        self.forget()

    def forget(self):
        self.x11.XSync(self.display, ctypes.c_void_p(True))

    def wait(self):
        event = (ctypes.c_long * 24)()
        while event[0] & 0xffffffff != self.MAP_NOTIFY:
            self.x11.XNextEvent(self.display, event)


def to_window(command, environment, shown):
    """Milliseconds until a window of the program is visible."""
    shown.forget()
    start = time.perf_counter()
    program = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        shown.wait()
        return 1000 * (time.perf_counter() - start)
    finally:
        program.terminate()
        program.wait()


def leave_recovery_files(quillet, profile, count):
    """As that many runs that were killed do."""
    script = pathlib.Path(profile, "killed.py")
    script.parent.mkdir(parents=True, exist_ok=True)
    script.write_text("import Design, os, time\nDesign.New()\nDesign.Box('1', '2', '3')\ntime.sleep(0.5)\n"
                      "Design.Box('1', '2', '3')\ntime.sleep(2)\nos.kill(os.getpid(), 9)\n")
    subprocess.run([quillet, "--headless", "--profile-dir", profile, "--script", str(script)], check=False)
    session, = pathlib.Path(profile, "recovery").iterdir()
    for _ in range(count - 1):
        copied = pathlib.Path(shutil.copytree(session, session.with_name(str(uuid.uuid4()))))
        document, = (entry for entry in copied.iterdir() if entry.is_dir())
        document.rename(document.with_name(str(uuid.uuid4())))


def to_end(command, environment):
    start = time.perf_counter()
    subprocess.run(command, env=environment, capture_output=True, check=True)
    return 1000 * (time.perf_counter() - start)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=10)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("--profile", help="a folder with settings; a fresh one if it is left out")
    parser.add_argument("--recovery-files", type=int, default=0)
    arguments = parser.parse_args()
    quillet = str(pathlib.Path(arguments.build) / "root/bin/quillet")
    with screen() as display, tempfile.TemporaryDirectory() as fresh:
        environment = {**os.environ, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb"}
        profile = ["--profile-dir", arguments.profile or fresh]
        shown = Shown(display)
        sides = {
            "headless, one line": lambda: to_end([quillet, "--headless", *profile, "--command", "Sleeper.Sleep 0"],
                                                 environment),
            "window": lambda: to_window([quillet, *profile], environment, shown),
        }
        if arguments.recovery_files:
            full = fresh + "/full"
            leave_recovery_files(quillet, full, arguments.recovery_files)
            sides[f"beside {arguments.recovery_files} files"] = lambda: to_window(
                [quillet, "--profile-dir", full], environment, shown)
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
