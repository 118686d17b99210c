#!/usr/bin/python3
"""Times edits with and without auto-save, headless and in a window on a screen of its own, and prints ratios.

Each edit adds a box; between two of them there is a quiet moment, in which the program may write a recovery file. Needs Xvfb.

    Benchmarks/auto_save.py [--rounds N] [--build DIR] [--profile DIR] [BOXES | FILE]...
"""

import argparse
import json
import os
import pathlib
import subprocess
import tempfile

from window import screen

SCRIPT = """
import json, sys, time
import Design, Document
model, edits, result = sys.argv[1], int(sys.argv[2]), sys.argv[3]
if model.isdigit():
    Design.New()
    for i in range(int(model)):
        Design.Box('1', '1', '1')
else:
    Document.Open(model)
Design.Box('1', '1', '1')  # the kernel is there now
time.sleep(1)
times = []
for i in range(edits):
    begin = time.perf_counter()
    Design.Box('2', '1', '1')
    times.append(1000 * (time.perf_counter() - begin))
    time.sleep(0.15)
json.dump(times, open(result, 'w'))
"""


def edits(arguments, model, display, auto_save):
    """Milliseconds of each edit."""
    environment = dict(os.environ, DISPLAY=display or "", WAYLAND_DISPLAY="")
    with tempfile.TemporaryDirectory() as folder:
        script, result = pathlib.Path(folder, "edits.py"), pathlib.Path(folder, "times.json")
        script.write_text(SCRIPT)
        options = pathlib.Path(arguments.profile, "options")
        options.mkdir(parents=True, exist_ok=True)
        pathlib.Path(options, "AutoSave.json").write_text(json.dumps({"performAutoSave": auto_save}))
        command = [str(pathlib.Path(arguments.build, "root/bin/quillet")), "--profile-dir", arguments.profile,
                   *([] if display else ["--headless"]), "--script", str(script)]
        tail = ["--", model, str(arguments.rounds), str(result)]
        program = subprocess.Popen(command + tail, env=environment, stdout=subprocess.DEVNULL)
        try:
            while program.poll() is None and not (result.exists() and result.stat().st_size > 0):
                try:
                    program.wait(0.2)
                except subprocess.TimeoutExpired:
                    pass
        finally:
            program.kill()
            program.wait()
        return sorted(json.loads(result.read_text()))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=100)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    parser.add_argument("--profile", default=tempfile.mkdtemp(prefix="quillet-auto-save-"))
    parser.add_argument("models", nargs="*", default=["10"])
    arguments = parser.parse_args()
    with screen() as display:
        for model in arguments.models:
            print(model if model.isdigit() else os.path.basename(model))
            for name, where in (("headless", None), ("window", display)):
                for auto_save in (False, True):
                    times = edits(arguments, model, where, auto_save)
                    last = len(times) - 1
                    print(f"  {name:8} {'with' if auto_save else 'without':7}  median {times[last // 2]:7.2f}"
                          f"   p99 {times[last * 99 // 100]:7.2f}   worst {times[last]:7.2f} ms", flush=True)


if __name__ == "__main__":
    main()
