#!/usr/bin/python3
"""Kills fast scripts at random times, has the next run recover what they did, and counts the steps that are lost.

Every session makes the same steps, so that one that was never killed tells all states there can be.

    Benchmarks/sessions.py [--sessions N] [--seed N] [--build DIR]

Ctrl-C ends it, and tells of those that were made.
"""

import argparse
import collections
import pathlib
import random
import subprocess
import tempfile

MOST = 400  # steps of a session

SCRIPT = """
import os, sys, threading, time
import Design, Model
wait, pause, most = float(sys.argv[1]), float(sys.argv[2]), int(sys.argv[3])
if wait:
    threading.Timer(wait, lambda: os.kill(os.getpid(), 9)).start()
Design.New()
for i in range(most):
    Design.Box(str(1 + i), '1', '1')
    print('done' if wait else 'digest ' + Model.Digest(), flush=True)
    time.sleep(pause)
time.sleep(wait)
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sessions", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=random.randrange(1000000))
    parser.add_argument("--build", default=str(pathlib.Path(__file__).parent.parent / "build/release"))
    arguments = parser.parse_args()
    quillet = str(pathlib.Path(arguments.build, "root/bin/quillet"))
    chance = random.Random(arguments.seed)
    print(f"seed {arguments.seed}", flush=True)

    def run(profile, *words):
        command = [quillet, "--headless", "--no-autorun", "--profile-dir", profile, *words]
        return subprocess.run(command, capture_output=True, text=True, check=False).stdout.splitlines()

    lost, steps, strange = collections.Counter(), 0, 0
    with tempfile.TemporaryDirectory() as folder:
        script = pathlib.Path(folder, "steps.py")
        script.write_text(SCRIPT)
        whole = run(f"{folder}/whole", "--script", str(script), "--", "0", "0", str(MOST))
        states = {line.split()[1]: count for count, line in enumerate(whole, 1) if line.startswith("digest")}
        try:
            for session in range(arguments.sessions):
                profile = f"{folder}/{session}"
                wait, pause = chance.uniform(0.02, 3), chance.choice((0.002, 0.01, 0.05))
                done = run(profile, "--script", str(script), "--", str(wait), str(pause), str(MOST)).count("done")
                found = run(profile, "--command", "AutoSave.Recovery", "--command", "Model.Digest")
                # A step that was made, and not told of any more, isn't lost.
                kept = states.get(found[-1] if found else "", None)
                if kept is None and found:
                    strange += 1
                    print(f"session {session}: after {done} steps {found} was found", flush=True)
                lost[max(done - (kept or 0), 0)] += 1
                steps += done
        except KeyboardInterrupt:
            pass  # What was done so far tells as much.
    print(f"{sum(lost.values())} sessions with {steps} steps were killed; lost steps: "
          + ", ".join(f"{count} in {times}" for count, times in sorted(lost.items()))
          + f"; {strange} were in a state that none was in")


if __name__ == "__main__":
    main()
