"""PostgreSQL for tests of the service: a server of the test's own, on this machine alone, as somebody who may do nothing in particular."""

import atexit
import contextlib
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "Support/Servers"))

from ports import free_port

NOBODY = 65534
PLAIN = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"] if os.geteuid() == 0 else []
USER = "itemhub"


def programs():
    """The folder of the newest server's programs, which Debian puts on nobody's path; nothing where there is none."""
    found = sorted(pathlib.Path("/usr/lib/postgresql").glob("*/bin/initdb"), key=lambda path: int(path.parts[4]))
    return found[-1].parent if found else None


def driver_is_there():
    return any(pathlib.Path("/usr/lib").glob("*/qt6/plugins/sqldrivers/libqsqlpsql.so"))


def missing():
    """What isn't installed for it; empty if nothing."""
    return ", ".join(name for name, there in [("postgresql", programs()), ("libqt6sql6-psql", driver_is_there())] if not there)


class Server:
    """One server with its data in a folder of its own."""

    def __init__(self, **settings):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="postgres-"))
        if PLAIN:
            os.chown(self.folder, NOBODY, NOBODY)
        self.data, self.port, self.process, self.settings = self.folder / "data", free_port(), None, settings

    def initialised(self):
        self.run("initdb", "-D", self.data, "-U", USER, "--auth=trust", "-E", "UTF8", "--locale=C.UTF-8", "--no-sync")
        return self

    def copied(self, primary):
        """Becomes a replica, which gets everything as it happens."""
        self.run("pg_basebackup", "-D", self.data, "-h", "127.0.0.1", "-p", primary.port, "-U", USER, "-R", "-c", "fast", "--no-sync")
        return self

    def run(self, program, *words):
        done = subprocess.run([*PLAIN, programs() / program, *map(str, words)], capture_output=True, text=True, cwd=self.folder)
        if done.returncode != 0:
            raise RuntimeError(f"{program}: {done.stderr}")
        return done.stdout

    def start(self):
        # One that was killed leaves a note, and children that end when they see it.
        settings = {"listen_addresses": "127.0.0.1", "port": self.port, "unix_socket_directories": "", "fsync": "off",
                    "max_connections": 200, "logging_collector": "off", **self.settings}
        words = [word for name, value in settings.items() for word in ("-c", f"{name}={value}")]
        with open(self.folder / "log", "ab") as log:
            self.process = subprocess.Popen([*PLAIN, programs() / "postgres", "-D", self.data, *words], stdout=log, stderr=log,
                                            cwd=self.folder)
        for _ in range(600):
            if self.process.poll() is not None:
                break
            if subprocess.run([programs() / "pg_isready", "-q", "-h", "127.0.0.1", "-p", str(self.port)]).returncode == 0:
                return self
            time.sleep(0.05)
        raise OSError(f"PostgreSQL doesn't start: {(self.folder / 'log').read_text()[-2000:]}")

    def stop(self, how=signal.SIGINT):
        if self.process and self.process.poll() is None:
            # A server that is killed leaves its children, which end when they see it.
            self.process.send_signal(how)
        if self.process:
            self.process.wait(timeout=60)

    def close(self):
        self.stop(signal.SIGQUIT)
        shutil.rmtree(self.folder, ignore_errors=True)

    def sql(self, statement, database="postgres"):
        """The rows that it answers, as texts."""
        told = self.run("psql", "-h", "127.0.0.1", "-p", self.port, "-U", USER, "-d", database, "-AtqX", "-F", "\x1f",
                        "-v", "ON_ERROR_STOP=1", "-c", statement)
        return [tuple(line.split("\x1f")) for line in told.splitlines()]

    @contextlib.contextmanager
    def transaction(self, statement, database):
        """Has run a statement in a transaction that lasts while this is entered."""
        psql = subprocess.Popen([programs() / "psql", "-h", "127.0.0.1", "-p", str(self.port), "-U", USER, "-d", database, "-AtqX"],
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        try:
            psql.stdin.write(f"BEGIN; {statement}; SELECT 'begun';\n")
            psql.stdin.flush()
            while psql.stdout.readline().strip() != "begun":
                pass
            yield
        finally:
            psql.communicate("ROLLBACK;\n")

    def database(self):
        """Makes an empty one; its name."""
        self.made = getattr(self, "made", 0) + 1
        name = f"items_{os.getpid()}_{self.made}"
        self.sql(f"CREATE DATABASE {name}")
        return name

    def reach(self, database):
        """What a configuration says of it."""
        return {"driver": "postgresql", "name": database, "host": "127.0.0.1", "port": self.port, "user": USER}


_shared = None


def shared():
    """The server that all tests of a process use, each with a database of its own."""
    global _shared
    if not _shared:
        _shared = Server()
        atexit.register(_shared.close)
        _shared.initialised().start()
    return _shared
