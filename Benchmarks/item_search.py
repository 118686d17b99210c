#!/usr/bin/python3
"""How long a person waits for what a search finds, from the letter to the painted panel.

    Benchmarks/item_search.py [--build DIR] [--items N...]

At each number of items in the program's own service: the first letter typed, and the last one of a word that is typed with a letter
every 60 ms, beside the same search without a window.
"""

import argparse
import json
import pathlib
import subprocess
import tempfile

import service


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default=str(pathlib.Path(__file__).resolve().parents[1] / "build/release"))
    parser.add_argument("--items", type=int, nargs="+", default=[1000, 10000, 100000])
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        bench = service.Bench(pathlib.Path(options.build) / "root/bin", 0, folder)
        with bench.local():
            pass  # The database is made.
        for count in options.items:
            bench.fill(count)
            with bench.local() as (_, port, token):
                run = subprocess.run([bench.binaries / "bench_item_search", folder / "user", f"http://127.0.0.1:{port}/", token,
                                      *service.WORDS], capture_output=True, text=True, check=True)
            times = json.loads(run.stdout.splitlines()[-1])
            print(f"{count} items: first letter to results {times['first']:.0f} ms (at most {times['slowest']:.0f} ms), last letter of a "
                  f"word {times['last']:.0f} ms; the search alone {times['search']:.0f} ms")


if __name__ == "__main__":
    main()
