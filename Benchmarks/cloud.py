#!/usr/bin/env python3
"""Compares the drive's client with curl doing the same to the same server in the same run.

    cloud.py PROGRAM [KIND]     PROGRAM is the built bench_cloud, KIND a server of Tests/Support/Servers (lighttpd)

A transfer is one bare request. A whole operation has all that belongs to it, and curl does the same requests: a save locks, looks,
sends, reads back and unlocks; a download looks before, and takes the place of the old file when it is on the disk; a listing is read by xmllint
after curl has it on the disk. All goes over connections that are kept.

Prints the median of the ratios of pairs of runs with the least and the greatest, the processor's milliseconds of both (curl's with its
start), the client's memory and the machine's load.
"""

import os
import pathlib
import re
import resource
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "Tests/Support/Servers"))
import servers  # noqa: E402

SIZES = (1, 50, 200)  # MB.
ENTRIES = 10000
SMALL, SMALL_BYTES = 100, 10 * 1024
SAVES = 20
PAIRS = 7
PROPERTIES = ('<?xml version="1.0" encoding="utf-8"?><D:propfind xmlns:D="DAV:" xmlns:o="http://owncloud.org/ns"><D:prop>'
              "<D:resourcetype/><D:getcontentlength/><D:getetag/><D:getlastmodified/><D:creator-displayname/>"
              "<o:owner-display-name/></D:prop></D:propfind>")
LOCK = ('<?xml version="1.0" encoding="utf-8"?><D:lockinfo xmlns:D="DAV:"><D:lockscope><D:exclusive/></D:lockscope>'
        "<D:locktype><D:write/></D:locktype><D:owner>curl</D:owner></D:lockinfo>")
XML = ["-H", "Content-Type: application/xml; charset=utf-8"]
LOOK = ["-X", "PROPFIND", "-H", "Depth: 0", *XML, "-d", PROPERTIES]


class Run:
    """Seconds, those of the processor, and MB."""

    def __init__(self, seconds=0.0, processor=0.0, megabytes=0):
        self.seconds, self.processor, self.megabytes = seconds, processor, megabytes

    def __add__(self, other):
        return Run(self.seconds + other.seconds, self.processor + other.processor, max(self.megabytes, other.megabytes))


def watched(command, **options):
    """What it prints, with its time and that of the processor."""
    before, begin = resource.getrusage(resource.RUSAGE_CHILDREN), time.monotonic()
    output = subprocess.run(command, capture_output=True, text=True, check=True, **options).stdout
    seconds, after = time.monotonic() - begin, resource.getrusage(resource.RUSAGE_CHILDREN)
    return output, Run(seconds, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)


def sync(path):
    handle = os.open(path, os.O_RDONLY)
    os.fsync(handle)
    os.close(handle)


class Bench:
    def __init__(self, program, server, folder):
        self.program, self.server, self.folder = program, server, pathlib.Path(folder)
        self.source, self.small = self.folder / "source", self.folder / "small"
        self.small.write_bytes(os.urandom(SMALL_BYTES))
        self.one = self.folder / "one"
        self.one.write_bytes(b"1")
        self.fresh = 0

    def client(self, operation, path, file="", count=0):
        output, _ = watched([self.program, self.server.address, self.server.user, operation, path, str(file), str(count)],
                            env={**os.environ, "QUILLET_PASSWORD": self.server.password})
        seconds, processor, megabytes = output.split()
        return Run(float(seconds), float(processor), int(megabytes))

    def curl(self, *requests):
        """Requests of a path and arguments, one after the other over one connection."""
        command = ["curl"]
        for path, *arguments in requests:
            command += ["--next"] if len(command) > 1 else []
            command += ["-sS", "--fail", "--noproxy", "*", "-u", f"{self.server.user}:{self.server.password}", "-w",
                        "%{stderr}%{time_total}\n", *arguments, self.server.address + path]
            command += [] if "-o" in arguments else ["-o", os.devnull]
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        done = subprocess.run(command, capture_output=True, text=True, check=True)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        processor = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        return done.stdout, Run(sum(map(float, done.stderr.split())), processor)

    def curl_upload(self, path, file, is_new):
        """What a save does, by curl. Where nothing is yet, it looks at the folder: --fail would end it otherwise."""
        _, looked = self.curl(("", *LOOK)) if is_new else ("", Run())
        answer, locked = self.curl((path, "-X", "LOCK", "-H", "Depth: 0", "-H", "Timeout: Second-120", *XML, "-d", LOCK, "-D", "-",
                                    "-o", os.devnull))
        token = re.search(r"^lock-token: *(<.*>)", answer, re.MULTILINE | re.IGNORECASE).group(1)
        _, rest = self.curl((path, *LOOK), (path, "-T", str(file), "-H", f"If: ({token})"), (path, *LOOK),
                            (path, "-X", "UNLOCK", "-H", f"Lock-Token: {token}"))
        return looked + locked + rest

    def curl_download(self, path, target):
        part = target.with_suffix(".part")
        _, run = self.curl((path, *LOOK), (path, "-o", str(part)))
        begin = time.monotonic()
        sync(part)
        part.replace(target)
        sync(target.parent)
        return run + Run(time.monotonic() - begin)

    def compare(self, name, ours, theirs):
        ratios, mine, others = [], [], []
        for pair in range(PAIRS):
            # Whoever comes second finds the machine as the first has left it.
            if pair % 2:
                other, own = theirs(pair), ours(pair)
            else:
                own, other = ours(pair), theirs(pair)
            ratios.append(own.seconds / other.seconds)
            mine.append(own)
            others.append(other)
        middle = [statistics.median(run.processor for run in runs) * 1000 for runs in (mine, others)]
        print(f"{name:38} {statistics.median(ratios):5.2f} times curl ({min(ratios):.2f} to {max(ratios):.2f}); "
              f"{statistics.median(run.seconds for run in mine) * 1000:7.1f} ms, processor {middle[0]:.1f} and {middle[1]:.1f} ms; "
              f"{max(run.megabytes for run in mine)} MB; load {os.getloadavg()[0]:.1f}", flush=True)

    def transfers(self, size):
        with open(self.source, "wb") as file:
            for _ in range(size):
                file.write(os.urandom(1 << 20))
        ours, theirs = self.folder / "ours", self.folder / "theirs"
        name = f"of {size} MB"
        self.compare(f"upload {name}, transfer", lambda i: self.client("put", f"/put{size}-{i}", self.source),
                     lambda i: self.curl((f"curl{size}-{i}", "-T", str(self.source)))[1])
        self.compare(f"upload {name}, whole", lambda i: self.client("upload", f"/upload{size}-{i}", self.source),
                     lambda i: self.curl_upload(f"curls{size}-{i}", self.source, True))
        self.compare(f"download {name}, transfer", lambda i: self.client("get", f"/put{size}-0", ours),
                     lambda i: self.curl((f"put{size}-0", "-o", str(theirs)))[1])
        self.compare(f"download {name}, whole", lambda i: self.client("download", f"/put{size}-0", ours),
                     lambda i: self.curl_download(f"put{size}-0", theirs))
        for file in self.server.drive.glob(f"*{size}-*"):
            file.unlink()

    def listing(self):
        many = self.server.drive / "many"
        many.mkdir()
        many.chmod(0o755)
        for i in range(ENTRIES):
            (many / f"file{i}").touch()
        target = self.folder / "listing"
        request = ("many/", "-X", "PROPFIND", "-H", "Depth: 1", *XML, "-d", PROPERTIES, "-o", str(target))
        self.compare(f"listing of {ENTRIES}, curl alone", lambda i: self.client("list", "/many"), lambda i: self.curl(request)[1])
        self.compare(f"listing of {ENTRIES}, curl and xmllint", lambda i: self.client("list", "/many"),
                     lambda i: self.curl(request)[1] + watched(["xmllint", "--noout", str(target)])[1])

    def small_files(self):
        def each(*arguments):
            return [(f"small{i}", *arguments) for i in range(SMALL)]

        name = f"{SMALL} files of {SMALL_BYTES // 1024} KB"
        self.compare(f"{name}, up", lambda i: self.client("put", "/small", self.small, SMALL),
                     lambda i: self.curl(*each("-T", str(self.small)))[1])
        self.compare(f"{name}, down", lambda i: self.client("get", "/small", self.folder / "ours", SMALL),
                     lambda i: self.curl(*each("-o", str(self.folder / "theirs")))[1])

    def saves(self):
        self.curl(*[(f"curl-save{i}", "-T", str(self.one)) for i in range(SAVES)])

        def ours(_):
            self.fresh += 1
            return self.client("save", f"/save{self.fresh}-", self.one, SAVES)

        def theirs(_):
            return sum((self.curl_upload(f"curl-save{i}", self.one, False) for i in range(SAVES)), Run())

        self.compare(f"{SAVES} saves of one byte, whole", ours, theirs)


def main():
    program, kind = sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else "lighttpd"
    with servers.TestServer(kind) as server, tempfile.TemporaryDirectory() as folder:
        bench = Bench(program, server, folder)
        for size in SIZES:
            bench.transfers(size)
        bench.listing()
        bench.small_files()
        bench.saves()


if __name__ == "__main__":
    main()
