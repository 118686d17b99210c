#!/usr/bin/python3
"""Tells how the cost of lines grows with what is open: each is timed with N parts, 2 N, and so on.

For each line the times with the fewest and with the most, and the exponent between the two largest sizes: 1 where twice
as much takes twice as long, 0 where it makes no difference. A whole operation above 1.1, and a single step above 0.1, is
marked; times below the noise of the machine are not.

    Benchmarks/growth.py [--from N] [--doublings N] [--rounds N] [--cpu] [--window] [--kernel] [--million] [--build DIR] [WHAT...]

WHAT is of parts, names, documents, assets, files (see Growth/lines.py), and of searches: a letter in the browser's filter
and in the search palette, which bench_browser times. Each has its table as soon as it is done. With --million, parts and
searches have a table of 125,000 to 1,000,000, too, made once; it takes some minutes. With --cpu,
times are processor time, that of the workers too, which tells more on a machine that others use. With --window, all runs in a window on a screen of
its own (Xvfb), where the browser follows each line. With --kernel, the STEP file of the parts is also read
and written by programs that do nothing but call the kernel, which take four times as long for twice as much.
"""

import argparse
import contextlib
import json
import math
import os
import pathlib
import subprocess
import sys
import tempfile
import time

import window

HERE = pathlib.Path(__file__).resolve().parent
WHOLE_LIMIT, STEP_LIMIT = 1.1, 0.1
MILLION = 1_000_000
NOISE = 20e-6  # Seconds: what is below isn't marked.


def by_kernel(quillet, file):
    """The seconds of the bare kernel for reading and for writing."""
    def milliseconds(what, program, *arguments):
        result = subprocess.run([quillet.with_name(program), *arguments], capture_output=True, text=True, check=True)
        return json.loads(result.stdout)[what]
    stored = file.with_suffix(".xbf")
    read = milliseconds("read_ms", "kernel_floor", "--store", stored, file, file.with_suffix(".kernel.stl"))
    return read / 1000, milliseconds("write_ms", "kernel_floor_step", stored, file.with_suffix(".kernel.stp")) / 1000


def run(quillet, what, count, arguments, display):
    """The seconds of each line, by its kind and name."""
    with tempfile.TemporaryDirectory() as folder:
        profile = pathlib.Path(folder) / "profile"
        result = subprocess.run([quillet, *([] if display else ["--headless"]), "--profile-dir", profile, "--script",
                                 HERE / "Growth/lines.py", "--", what, str(count), folder,
                                 *(["cpu"] if arguments.cpu else [])], capture_output=True, text=True,
                                cwd=folder, env=dict(os.environ, **({"DISPLAY": display} if display else {})))
        answers = [line for line in result.stdout.splitlines() if line.startswith("GROWTH ")]
        if result.returncode != 0 or not answers:
            sys.exit(f"{what} {count} failed ({result.returncode}):\n{result.stdout[-2000:]}{result.stderr[-2000:]}")
        took = {(kind, name): seconds for kind, name, seconds in json.loads(answers[-1].removeprefix("GROWTH "))}
        if arguments.kernel and what == "parts":
            (took["whole", "the bare kernel's open .stp"],
             took["whole", "the bare kernel's save .stp"]) = by_kernel(quillet, pathlib.Path(folder) / "parts.stp")
    return took


def search(quillet, count):
    """The seconds of a letter, from the key to the painted rows."""
    with tempfile.TemporaryDirectory() as folder:
        result = subprocess.run([quillet.with_name("bench_browser"), folder, str(count)], capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(f"bench_browser {count} failed ({result.returncode}):\n{result.stdout}{result.stderr}")
    _, median, most, _, _, palette = (float(word) / 1000 for word in result.stdout.splitlines()[-1].split())
    return {("whole", "a letter in the browser's filter"): median, ("whole", "the slowest of these letters"): most,
            ("step", "a letter in the palette"): palette}


def smallest(quillet, what, count, arguments, display):
    best = {}
    for _ in range(arguments.rounds):
        start = time.monotonic()
        times = search(quillet, count) if what == "searches" else run(quillet, what, count, arguments, display)
        for key, seconds in times.items():
            best[key] = min(seconds, best.get(key, math.inf))
        print(f"{what} {count}: {time.monotonic() - start:.0f} s", file=sys.stderr)
    return best


def show(what, counts, times):
    print(f"\n{what + ', ms':46} {'at ' + str(counts[0]):>12} {'at ' + str(counts[-1]):>12} {'exponent':>9}")
    # No STEP file is made of the largest models.
    for kind, name in (key for key in times[0] if key in times[-2] and key in times[-1]):
        first, before, last = (each[kind, name] for each in (times[0], times[-2], times[-1]))
        exponent = math.log2(last / before)
        high = last > NOISE and exponent > (WHOLE_LIMIT if kind == "whole" else STEP_LIMIT)
        print(f"{kind:6}{name:40} {1000 * first:12.3f} {1000 * last:12.3f} {exponent:9.2f}{'  <' if high else ''}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--from", type=int, default=1000, dest="first")
    parser.add_argument("--doublings", type=int, default=3)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--build", default=str(HERE.parent / "build/release"))
    parser.add_argument("--cpu", action="store_true")
    parser.add_argument("--window", action="store_true")
    parser.add_argument("--kernel", action="store_true")
    parser.add_argument("--million", action="store_true")
    parser.add_argument("what", nargs="*", default=["parts", "names", "documents", "assets", "files", "searches"])
    arguments = parser.parse_args()
    quillet = pathlib.Path(arguments.build).resolve() / "root/bin/quillet"
    counts = [arguments.first << doubling for doubling in range(arguments.doublings + 1)]
    with window.screen() if arguments.window else contextlib.nullcontext() as display:
        for what in arguments.what:
            show(what, counts, [smallest(quillet, what, count, arguments, display) for count in counts])
        arguments.rounds = 1
        counts = [MILLION >> doubling for doubling in (3, 2, 1, 0)]
        for what in (what for what in arguments.what if arguments.million and what in ("parts", "searches")):
            show(what, counts, [smallest(quillet, what, count, arguments, display) for count in counts])


if __name__ == "__main__":
    main()
