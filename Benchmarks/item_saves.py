#!/usr/bin/python3
"""What saving an item's document costs beside copying and hashing its file.

    Benchmarks/item_saves.py [--build DIR] [--sizes MIB...] [--saves N]

For each size, the same file is saved several times as an item's document of the program's own service. "until the save returns"
is what the service's client adds to a save; "until it has arrived" is the background's, of all saves together, beside cp and
sha256sum as often. The libraries that a program maps before anybody signs in are listed if QtNetwork or what stands for it
is among them.
"""

import argparse
import json
import os
import pathlib
import statistics
import subprocess
import tempfile
import time


def copy_and_hash(file, target, times):
    begin = time.monotonic()
    for _ in range(times):
        subprocess.run(["cp", file, target], check=True)
        subprocess.run(["sha256sum", target], check=True, stdout=subprocess.DEVNULL)
    return time.monotonic() - begin


def saves(binaries, folder, file, times):
    result = subprocess.run([binaries / "bench_item_saves", folder / f"profile-{file.stat().st_size}", file, str(times)],
                            capture_output=True, text=True, check=True)
    return json.loads(result.stdout)


def mapped_at_start(binaries, folder):
    """Libraries of the network that a headless run has, when it has run its first line."""
    script = folder / "maps.py"
    script.write_text("print('\\n'.join(sorted({line.split()[-1] for line in open('/proc/self/maps') if '.so' in line})))\n")
    result = subprocess.run([binaries / "quillet", "--profile-dir", folder / "start", "--headless", "--script", script],
                            capture_output=True, text=True)
    names = [pathlib.Path(line).name for line in result.stdout.splitlines() if ".so" in line]
    if not names:
        raise SystemExit(f"the program did not say what it maps: {result.stderr}")
    return [name for name in names if any(part in name for part in ("Qt6Network", "curl", "ItemhubClient", "VsNetwork", "ssl"))]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parents[1] / "build/release")
    parser.add_argument("--sizes", type=int, nargs="+", default=[1, 20, 200])
    parser.add_argument("--saves", type=int, default=5)
    options = parser.parse_args()
    binaries = options.build / "root/bin"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        print(f"network libraries mapped at the start: {', '.join(mapped_at_start(binaries, folder)) or 'none'}")
        for size in options.sizes:
            file = folder / f"{size}.vlra"
            file.write_bytes(os.urandom(size << 20))
            base = copy_and_hash(file, folder / "copy", options.saves)
            got = saves(binaries, folder, file, options.saves)
            again = copy_and_hash(file, folder / "copy", options.saves)
            base = min(base, again)
            print(f"{size:4} MiB: until the save returns {statistics.median(got['saves']):.2f} ms, "
                  f"{statistics.median(got['saves']) / (1000 * base / options.saves):.4f} of cp and sha256sum; "
                  f"until {options.saves} have arrived {got['arrived']:.2f} s, {got['arrived'] / base:.2f} of it; "
                  f"first sign-in {1000 * got['signIn']:.0f} ms")


if __name__ == "__main__":
    main()
