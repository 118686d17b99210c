#!/usr/bin/env python3
"""A real store of objects (Ceph with its gateway) in a folder of its own, without disks: one monitor, one store in memory, one gateway."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import urllib.error
import urllib.request
import uuid

import servers
from ports import free_port

NEEDED = ("ceph", "ceph-mon", "ceph-osd", "monmaptool", "radosgw", "radosgw-admin")
SECONDS_TO_START = 90
KEY_ID, SECRET, BUCKET = "ITEMHUBITEMHUBITEMHU", "a/secret+of-the-test", "itemhub"


def missing():
    return ", ".join(name for name in NEEDED if not shutil.which(name))


class ObjectStore:
    """A context manager whose end stops it and removes its folder. It belongs to the user whom `plain` names."""

    def __init__(self, plain=(), owner=None):
        self.plain = list(plain)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="objects-"))
        self.port, monitor, older = free_port(), free_port(), free_port()
        self.monitor = f"[v2:127.0.0.1:{monitor},v1:127.0.0.1:{older}]"
        self.id = str(uuid.uuid4())
        for name in ("mon", "osd", "run", "rgw"):
            (self.folder / name).mkdir()
        settings = {
            "fsid": self.id, "mon host": self.monitor, "public addr": "127.0.0.1", "cluster addr": "127.0.0.1",
            "osd objectstore": "memstore", "memstore device bytes": 1 << 30, "osd pool default size": 1, "osd pool default min size": 1,
            "mon allow pool size one": "true", "osd pool default pg num": 1, "osd pool default pg autoscale mode": "off", "osd crush chooseleaf type": 0,
            "rgw frontends": f"beast endpoint=127.0.0.1:{self.port}", "rgw data": self.folder / "rgw", "mon data": self.folder / "mon",
            "osd data": self.folder / "osd", "run dir": self.folder / "run", "crash dir": self.folder / "run",
            "admin socket": self.folder / "run/$name.asok", "pid file": self.folder / "run/$name.pid", "log file": self.folder / "$name.log",
            # Nobody else reaches it: no keys among its parts, which then cannot encrypt either.
            **{f"auth {part} required": "none" for part in ("cluster", "service", "client")},
            **{f"ms {part} mode": "crc" for part in ("client", "cluster", "service", "mon client", "mon cluster", "mon service")}}
        (self.folder / "ceph.conf").write_text("[global]\n" + "".join(f"{name} = {value}\n" for name, value in settings.items()))
        for path in (self.folder, *self.folder.iterdir()):
            if owner is not None:
                os.chown(path, owner, owner)
        self.processes = []

    @property
    def address(self):
        return f"http://127.0.0.1:{self.port}"

    def words(self, program, *words):
        return [*self.plain, "env", f"HOME={self.folder}", program, "-c", str(self.folder / "ceph.conf"), *words]

    def run(self, program, *words):
        done = subprocess.run(self.words(program, *words), cwd=self.folder, capture_output=True, text=True, timeout=SECONDS_TO_START)
        if done.returncode != 0:
            raise RuntimeError(f"{program} {words}: {done.stdout[-1000:]} {done.stderr[-1000:]}")
        return done.stdout

    def begin(self, program, *words):
        with open(self.folder / "output", "ab") as log:
            self.processes.append(subprocess.Popen(self.words(program, "-f", *words), cwd=self.folder, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                                   start_new_session=True, preexec_fn=servers.end_with_parent))

    def answers(self):
        try:
            return urllib.request.build_opener(urllib.request.ProxyHandler({})).open(self.address, timeout=5).status == 200
        except (OSError, urllib.error.URLError):
            return False

    def __enter__(self):
        self.run("monmaptool", "--create", "--fsid", self.id, "--addv", "a", self.monitor, "monmap")
        self.run("ceph-mon", "-i", "a", "--mkfs", "--monmap", "monmap")
        self.begin("ceph-mon", "-i", "a")
        store = str(uuid.uuid4())
        self.run("ceph", "osd", "new", store)
        self.run("ceph-osd", "-i", "0", "--mkfs", "--osd-uuid", store)
        self.begin("ceph-osd", "-i", "0")
        self.begin("radosgw", "-n", "client.rgw")
        end = time.monotonic() + SECONDS_TO_START
        while not self.answers():
            if time.monotonic() > end or any(each.poll() is not None for each in self.processes):
                raise RuntimeError(f"the store doesn't start: {(self.folder / 'output').read_text()[-2000:]}")
            time.sleep(0.2)
        self.run("radosgw-admin", "user", "create", "--uid=itemhub", "--display-name=Itemhub", f"--access-key={KEY_ID}", f"--secret-key={SECRET}")
        if self.ask("PUT") is None:
            raise RuntimeError("there can be no bucket")
        return self

    def ask(self, method, name="", *words):
        """What it answers to a client that isn't ours; nothing if it refuses."""
        done = subprocess.run(["curl", "-sf", "-X", method, "--aws-sigv4", "aws:amz:us-east-1:s3", "-u", f"{KEY_ID}:{SECRET}",
                               "-H", "x-amz-content-sha256: UNSIGNED-PAYLOAD", *words, f"{self.address}/{BUCKET}/{name}"], capture_output=True)
        return done.stdout if done.returncode == 0 else None

    def end_gateway(self):
        servers.signal_group(self.processes[-1].pid, signal.SIGKILL)
        self.processes.pop().wait()

    def begin_gateway(self):
        self.begin("radosgw", "-n", "client.rgw")
        end = time.monotonic() + SECONDS_TO_START
        while not self.answers() and time.monotonic() < end:
            time.sleep(0.2)

    def __exit__(self, *_):
        for process in reversed(self.processes):
            servers.signal_group(process.pid, signal.SIGKILL)
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
