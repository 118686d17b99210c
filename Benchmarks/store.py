#!/usr/bin/python3
"""Opens STEP files, saves and reopens them, Quillet beside the bare kernel's own binary files, and prints ratios.

Each round runs the kernel's program and then ours, one after the other, so that both see the same machine; the
smallest time of the rounds counts. Quillet's saves wait for the disk (fsync), the kernel's don't.

    Benchmarks/store.py [--rounds N] [--build DIR] FILE...
"""

import argparse
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile


def run(command):
    result = subprocess.run([str(part) for part in command], capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(f"{command[0]} failed ({result.returncode}):\n{result.stdout}{result.stderr}")
    return json.loads(result.stdout)


def smallest(rounds, work):
    best = {}
    for _ in range(rounds):
        for name, value in work().items():
            best[name] = min(best.get(name, float("inf")), value)
    return best


def measure(file, binaries, rounds):
    with tempfile.TemporaryDirectory() as scratch:
        scratch = pathlib.Path(scratch)
        native, exact = scratch / "out.tdsn", scratch / "out.xbf"

        def work():
            shutil.rmtree(scratch / "profile", ignore_errors=True)
            kernel = run([binaries / "kernel_floor", "--store", exact, file, scratch / "out.stl"])
            reread = run([binaries / "kernel_floor", "--reopen", exact])
            made = run([binaries / "bench_data_model", "make", file, native, scratch / "profile"])
            # By the same user, whose own data these are.
            reopened = run([binaries / "bench_data_model", "reopen", native, scratch / "profile"])
            return {
                "kernel cold": kernel["read_ms"] + kernel["mesh_ms"], "kernel save": kernel["store_ms"],
                "kernel reopen": reread["reopen_ms"], "kernel memory": reread["peak_kib"],
                "kernel size": os.path.getsize(exact) / 1024,
                **made, **reopened, "native size": os.path.getsize(native) / 1024,
            }

        return smallest(rounds, work)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("files", nargs="*")
    arguments = parser.parse_args()
    binaries = pathlib.Path(arguments.build) / "root/bin"

    for file in arguments.files:
        best = measure(file, binaries, arguments.rounds)
        shown = best["open_ms"] + best["look_ms"]
        print(os.path.basename(file))
        for name, ours, theirs, unit in [
            ("open cold", best["cold_ms"], best["kernel cold"], "ms"),
            ("save first", best["save_ms"], best["kernel save"], "ms"),
            ("save unchanged", best["unchanged_ms"], best["kernel save"], "ms"),
            ("save, a small asset changed", best["one_changed_ms"], best["kernel save"], "ms"),
            ("save, the large asset changed", best["changed_ms"], best["kernel save"], "ms"),
            ("reopen", best["open_ms"], best["kernel reopen"], "ms"),
            ("reopen and look at all of it", shown, best["kernel reopen"], "ms"),
            ("reopen, look, measure a part", shown + best["kernel_ms"], best["kernel reopen"], "ms"),
            ("memory, shown", best["shown_kib"], best["kernel memory"], "KiB"),
            ("memory, measured", best["peak_kib"], best["kernel memory"], "KiB"),
            ("size of the file", best["native size"], best["kernel size"], "KiB"),
        ]:
            print(f"  {name:30} {ours:10.1f} {unit:3}  kernel {theirs:10.1f}  ratio {ours / theirs:6.2f}")
        print(f"  reopened and looked at {best['cold_ms'] / shown:.0f} times faster than opened cold")

    def closed(count):
        with tempfile.TemporaryDirectory() as folder:
            return run([binaries / "bench_data_model", "close", folder, count])["closed_ms"] / count

    few = min(closed(20) for _ in range(arguments.rounds))
    many = min(closed(200) for _ in range(arguments.rounds))
    print(f"closing a document: {few * 1000:.0f} us of 20, {many * 1000:.0f} us of 200, ratio {many / few:.2f}")


if __name__ == "__main__":
    main()
