#!/usr/bin/python3
"""The lifecycle service beside a bare hello of its HTTP library, and what it costs as items become many.

    Benchmarks/service.py [--build DIR] [--seconds N] [--items N...] [--upload MIB]

Load comes from a second process. Searches, reads and writes are asked at each number of items; ratios count, single times
on a shared machine mean little.
"""

import argparse
import contextlib
import hashlib
import http.client
import json
import os
import pathlib
import random
import sqlite3
import statistics
import subprocess
import tempfile
import time

WORDS = ("bracket housing plate shaft bearing flange gasket cover spindle lever pulley bushing washer rivet hinge clamp nozzle "
         "piston valve manifold carrier rotor stator frame rail guide spring damper bolt nut screw stud ring seal plug cap").split()


@contextlib.contextmanager
def running(command):
    process = subprocess.Popen([str(part) for part in command], stdout=subprocess.PIPE, text=True)
    try:
        yield process, process.stdout.readline()
    finally:
        process.terminate()
        process.wait()
        process.stdout.close()


def peak_mib(process, name="VmHWM"):
    status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    return int(status.split(f"{name}:")[1].split()[0]) / 1024


class Bench:
    def __init__(self, binaries, seconds, folder):
        self.binaries, self.seconds, self.folder = binaries, seconds, folder

    def load(self, port, method, token, *paths, connections=4):
        result = subprocess.run([self.binaries / "bench_http_load", str(port), str(self.seconds), str(connections), method, token,
                                 *paths], capture_output=True, text=True, check=True)
        return json.loads(result.stdout)

    @contextlib.contextmanager
    def local(self):
        with running([self.binaries / "quillet-itemhub", "--local", self.folder / "profile"]) as (process, line):
            told = json.loads(line)
            yield process, int(told["url"].rsplit(":", 1)[1]), told["token"]

    def fill(self, count):
        """Brings the number of items up to count, as the service's own statements would."""
        draw = random.Random(count)
        with contextlib.closing(sqlite3.connect(self.folder / "profile/items.sqlite")) as database, database:
            have = database.execute("SELECT count(*) FROM item").fetchone()[0]
            for number in range(have, count):
                caption = " ".join(draw.choice(WORDS) for _ in range(3)) + f" {number}"
                text = " ".join(draw.choice(WORDS) for _ in range(12))
                item = database.execute(
                    "INSERT INTO item (tenant_id, workspace_id, caption, description, revision, created_by, created_at, changed_at) "
                    "VALUES (1, 1, ?, ?, 1, 1, 0, 0)", (caption, text)).lastrowid
                database.execute("INSERT INTO search_1(rowid, caption, text) VALUES (?, ?, ?)", (item, caption, text))

    def start_times(self):
        def one():
            begin = time.monotonic()
            with self.local():
                return (time.monotonic() - begin) * 1000
        first = one()
        times = [one() for _ in range(15)]
        return first, min(times), statistics.median(times)

    def searches(self, port, token):
        """Distinct questions, as people type them: one word's beginning, two words, a number, a word that all have."""
        draw = random.Random(7)
        kinds = {
            "beginning of a word": lambda: draw.choice(WORDS)[:4],
            "two words": lambda: f"{draw.choice(WORDS)}+{draw.choice(WORDS)}",
            "three words": lambda: "+".join(draw.sample(WORDS, 3)),
            "a number": lambda: str(draw.randrange(1000)),
            "two letters": lambda: draw.choice(WORDS)[:2],
        }
        connection = http.client.HTTPConnection("127.0.0.1", port)
        for name, make in kinds.items():
            times = []
            for _ in range(40):
                begin = time.monotonic()
                connection.request("GET", f"/search?q={make()}", headers={"Authorization": f"Bearer {token}"})
                answer = connection.getresponse()
                answer.read()
                assert answer.status == 200
                times.append((time.monotonic() - begin) * 1000)
            yield name, statistics.median(times), sorted(times)[-2]

    def upload(self, size):
        data = self.folder / "data"
        with open(data, "wb") as file:
            for _ in range(size // (1 << 20)):
                file.write(os.urandom(1 << 20))
        def copy():
            begin = time.monotonic()
            subprocess.run(["cp", data, self.folder / "copy"], check=True)
            subprocess.run(["sha256sum", self.folder / "copy"], check=True, stdout=subprocess.DEVNULL)
            return time.monotonic() - begin
        def copy_safely():
            begin = time.monotonic()
            subprocess.run(["dd", f"if={data}", f"of={self.folder / 'copy'}", "bs=1M", "conv=fsync", "status=none"], check=True)
            subprocess.run(["sha256sum", self.folder / "copy"], check=True, stdout=subprocess.DEVNULL)
            return time.monotonic() - begin
        with self.local() as (process, port, token):
            head = {"Authorization": f"Bearer {token}", "Tus-Resumable": "1.0.0"}
            before = peak_mib(process)
            def send(new):
                data_now = data
                if new:
                    with open(data, "r+b") as file:
                        file.write(os.urandom(64))
                connection = http.client.HTTPConnection("127.0.0.1", port)
                begin = time.monotonic()
                connection.request("POST", "/uploads", headers={**head, "Upload-Length": str(size)})
                answer = connection.getresponse()
                answer.read()
                with open(data_now, "rb") as file:
                    connection.blocksize = 1 << 18
                    connection.request("PATCH", "/uploads/" + answer.headers["Location"].rsplit("/", 1)[1], body=file, headers={
                        **head, "Upload-Offset": "0", "Content-Type": "application/offset+octet-stream", "Content-Length": str(size)})
                    answer = connection.getresponse()
                    answer.read()
                assert answer.status == 204
                return time.monotonic() - begin
            rounds = [(send(True), copy(), copy_safely()) for _ in range(3)]
            grown = peak_mib(process) - before
        return [min(column) for column in zip(*rounds)], grown


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).resolve().parents[1] / "build/release"))
    parser.add_argument("--seconds", type=float, default=3)
    parser.add_argument("--items", type=int, nargs="*", default=[1000, 10000, 100000])
    parser.add_argument("--upload", type=int, default=200, help="MiB")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(pathlib.Path(arguments.build) / "root/bin", arguments.seconds, pathlib.Path(folder))
        first, best, again = bench.start_times()
        print(f"start of --local to its address: first {first:.0f} ms, then {again:.0f} ms, at best {best:.0f} ms")
        for count in arguments.items:
            bench.fill(count)
            with running([bench.binaries / "bench_hello"]) as (_, port), bench.local() as (process, own, token):
                paths = [f"/items/{draw}" for draw in random.Random(1).sample(range(1, count + 1), 500)]
                # In turn, so that both see the same machine.
                rounds = [(bench.load(int(port), "GET", token, "/hello"), bench.load(own, "GET", token, *paths)) for _ in range(5)]
                hello, read = sorted(rounds, key=lambda pair: pair[1]["per_second"] / pair[0]["per_second"])[2]
                listed = bench.load(own, "GET", token, "/workspaces/1/items?limit=100")
                print(f"{count} items: reads {read['per_second']:.0f}/s, {read['per_second'] / hello['per_second']:.2f} of hello "
                      f"({hello['per_second']:.0f}/s); median {read['median_ms']:.2f} ms beside {hello['median_ms']:.2f} ms; "
                      f"lists of 100 {listed['median_ms']:.2f} ms")
                for name, median, slow in bench.searches(own, token):
                    print(f"  search, {name}: median {median:.1f} ms, nearly the slowest {slow:.1f} ms")
                written = bench.load(own, "POST", token, "/workspaces/1/items")
                print(f"  writes {written['per_second']:.0f}/s, median {written['median_ms']:.2f} ms; memory {peak_mib(process):.0f} MiB")
        (sent, copied, safely), grown = bench.upload(arguments.upload << 20)
        print(f"upload of {arguments.upload} MiB: {sent:.2f} s, {sent / copied:.2f} of cp and sha256sum ({copied:.2f} s), "
              f"{sent / safely:.2f} of those with fsync ({safely:.2f} s); memory grew by {grown:.1f} MiB")


if __name__ == "__main__":
    main()
