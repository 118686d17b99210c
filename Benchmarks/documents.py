#!/usr/bin/python3
"""Times the document commands with few and with many documents open, and prints ratios.

Each figure is the difference of two runs of the program that are alike but for the lines in question, so that start
and end of the program are not in it. The runs alternate; the minimum of the rounds is printed.

    Benchmarks/documents.py [--rounds N] [--build DIR]
"""

import argparse
import pathlib
import subprocess
import tempfile
import time

SWITCHES = 100000


def run(quillet, folder, lines):
    """Milliseconds of a headless run of these lines."""
    transcript = pathlib.Path(folder) / "lines.txt"
    transcript.write_text("\n".join(lines) + "\n")
    start = time.perf_counter()
    subprocess.run([quillet, "--headless", "--profile-dir", folder, "--replay", transcript], capture_output=True,
                   check=True)
    return 1000 * (time.perf_counter() - start)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    arguments = parser.parse_args()
    quillet = str(pathlib.Path(arguments.build) / "root/bin/quillet")

    def opened(count):
        return ["VuCommands.NewSingleDocumentCmd"] * count

    cycles = ["VuCommands.CycleOpenDocumentsCmd"] * SWITCHES
    close = ["Document.CloseAll"]
    # Name, the lines, the same without what is timed, how often that is done.
    figures = [
        ("switch, 5 open", opened(5) + cycles, opened(5), SWITCHES),
        ("switch, 50 open", opened(50) + cycles, opened(50), SWITCHES),
        # The program's end would close them too, so that their making is in these two; the first document has what
        # is made once.
        ("make, close 1000", opened(1001) + close, opened(1) + close, 1000),
        ("make, close 4000", opened(4001) + close, opened(1) + close, 4000),
    ]
    best = {}
    with tempfile.TemporaryDirectory() as folder:
        for _ in range(arguments.rounds):
            for name, lines, without, count in figures:
                for side, text in (("with", lines), ("without", without)):
                    took = run(quillet, folder, text)
                    best[name, side] = min(took, best.get((name, side), took))
    print(f"{'':18} {'us each':>9} {'x few open':>11}")
    floor = None
    for index, (name, _, _, count) in enumerate(figures):
        each = 1000 * (best[name, "with"] - best[name, "without"]) / count
        if index % 2 == 0:
            floor = each
        print(f"{name:18} {each:9.1f} {each / floor:11.2f}")


if __name__ == "__main__":
    main()
