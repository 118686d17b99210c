#!/usr/bin/env python3
"""Compares the drive's client with curl doing the same to the same server in the same run.

    cloud.py PROGRAM [KIND]     PROGRAM is the built bench_cloud, KIND a server of Tests/Support/Servers (lighttpd)

Prints the median of the ratios of pairs of runs, and the client's memory. A save is a new file here: beside the transfer it has the
client's lock, its look before and its reading back, which curl hasn't.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "Tests/Support/Servers"))
import servers  # noqa: E402

SIZES = (1, 50, 200)  # MB.
ENTRIES = 10000
PAIRS = 5


def client(program, server, *arguments):
    run = subprocess.run([program, server.address, server.user, *arguments], capture_output=True, text=True, check=True,
                         env={**os.environ, "QUILLET_PASSWORD": server.password})
    seconds, megabytes = run.stdout.split()
    return float(seconds), int(megabytes)


def curl(server, path, *arguments):
    run = subprocess.run(["curl", "-sS", "--fail", "--noproxy", "*", "-u", f"{server.user}:{server.password}", "-o", os.devnull,
                          "-w", "%{time_total}", *arguments, server.address + path], capture_output=True, text=True, check=True)
    return float(run.stdout)


def compare(name, ours, theirs):
    ratios, memory = [], 0
    for pair in range(PAIRS):
        seconds, megabytes = ours(pair)
        ratios.append(seconds / theirs(pair))
        memory = max(memory, megabytes)
    print(f"{name:24} {statistics.median(ratios):6.2f} times curl ({min(ratios):.2f} to {max(ratios):.2f}), {memory} MB", flush=True)


def main():
    program, kind = sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else "lighttpd"
    with servers.TestServer(kind) as server, tempfile.TemporaryDirectory() as folder:
        source, target = f"{folder}/source", f"{folder}/target"
        for size in SIZES:
            with open(source, "wb") as file:
                for _ in range(size):
                    file.write(os.urandom(1 << 20))
            compare(f"upload of {size} MB", lambda i: client(program, server, "upload", f"/ours{size}-{i}", source),
                    lambda i: curl(server, f"theirs{size}-{i}", "-T", source))
            compare(f"download of {size} MB", lambda i: client(program, server, "download", f"/ours{size}-0", target),
                    lambda i: curl(server, f"ours{size}-0", "-o", f"{folder}/curl"))
        many = server.drive / "many"
        many.mkdir()
        many.chmod(0o755)
        for i in range(ENTRIES):
            (many / f"file{i}").touch()
        compare(f"listing of {ENTRIES}", lambda i: client(program, server, "list", "/many"),
                lambda i: curl(server, "many/", "-X", "PROPFIND", "-H", "Depth: 1"))


if __name__ == "__main__":
    main()
