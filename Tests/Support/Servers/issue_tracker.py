#!/usr/bin/env python3
"""Starts a real issue tracker (Redmine), for as long as standard input is open.

At the start it prints a line of JSON: its address, and by name the key of each person in it, who all have one password. In the project
"Designs", which has the number 1, ada and bob may write, mia manages, and eve may look. If something isn't installed, it prints
"missing" and what. It belongs to the user who calls, and has its database and its files in a folder that goes with it.
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

import servers
from ports import free_port

ROOT = "/usr/share/redmine"
NEEDED = [f"{ROOT}/config.ru", "/usr/bin/rackup", "/usr/lib/ruby/vendor_ruby/sqlite3.rb"]
PASSWORD = "correct horse battery"
SECONDS_TO_START = 60


def missing():
    return [file for file in NEEDED if not os.path.exists(file)]


class IssueTracker:
    """A context manager whose end stops it and removes its folder."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-tracker-"))
        for name in ("config", "files", "log", "tmp"):
            (self.folder / name).mkdir()
        (self.folder / "config/database.yml").write_text(
            f"production:\n  adapter: sqlite3\n  database: {self.folder}/database\n  timeout: 20000\n")
        (self.folder / "config/secret_key.txt").write_text(os.urandom(40).hex())
        # Debian's own one knows the databases that this user may read, of which there is none.
        (self.folder / "Gemfile").write_text(f'eval_gemfile "{ROOT}/Gemfile"\ngem "sqlite3"\ngem "webrick"\n')
        self.process = None
        self.environment = {
            "PATH": "/usr/bin:/bin", "HOME": str(self.folder), "TMPDIR": str(self.folder / "tmp"), "LANG": "C.UTF-8",
            "RAILS_ENV": "production", "BUNDLE_GEMFILE": str(self.folder / "Gemfile"), "SCHEMA": str(self.folder / "schema.rb"),
            # An instance is a folder below the tracker's own; this one lies elsewhere.
            "REDMINE_INSTANCE": "../../../.." + str(self.folder), "QUILLET_PASSWORD": PASSWORD}

    def run(self, *words):
        done = subprocess.run(words, cwd=ROOT, env=self.environment, capture_output=True, text=True)
        if done.returncode != 0:
            raise RuntimeError(f"{words}: {done.stdout[-1000:]} {done.stderr[-1000:]}")
        return done.stdout

    def __enter__(self):
        self.run("bin/rake", "db:migrate")
        told = self.run("bin/rails", "runner", str(servers.HERE / "Configurations/redmine.rb"))
        self.keys = dict(line.split() for line in told.splitlines())
        end = time.monotonic() + SECONDS_TO_START
        while True:
            self.port = free_port()
            with open(self.folder / "log/server", "ab") as log:
                self.process = subprocess.Popen(
                    ["/usr/bin/rackup", "-E", "production", "-s", "webrick", "-o", "127.0.0.1", "-p", str(self.port), "config.ru"],
                    cwd=ROOT, env=self.environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True,
                    preexec_fn=servers.end_with_parent)
            while self.process.poll() is None and time.monotonic() < end:
                if self.answers():
                    return self
                time.sleep(0.05)
            servers.signal_group(self.process.pid, signal.SIGKILL)
            if time.monotonic() >= end:
                raise RuntimeError(f"the tracker doesn't start: {(self.folder / 'log/server').read_text()[-2000:]}")

    def __exit__(self, *_):
        if self.process:
            servers.signal_group(self.process.pid, signal.SIGKILL)
            self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    @property
    def address(self):
        return f"http://127.0.0.1:{self.port}/"

    def answers(self):
        """Whether it is this one that answers: no other knows the key."""
        request = urllib.request.Request(self.address + "users/current.json", headers={"X-Redmine-API-Key": self.keys["ada"]})
        try:
            return urllib.request.build_opener(urllib.request.ProxyHandler({})).open(request, timeout=20).status == 200
        except (OSError, urllib.error.URLError):
            return False


def main():
    if absent := missing():
        print("missing", ", ".join(absent), flush=True)
        return
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with IssueTracker() as tracker:
        print(json.dumps({"address": tracker.address, **tracker.keys}), flush=True)
        for _ in sys.stdin:
            pass


if __name__ == "__main__":
    main()
