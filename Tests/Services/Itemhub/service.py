"""What the tests of the service share: the real program on a port of its own, and clients that speak HTTP with it.

The program runs as a user who may do nothing in particular, also where root runs the tests.
"""

import base64
import contextlib
import hashlib
import http.client
import io
import json
import os
import pathlib
import shutil
import re
import signal
import sqlite3
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import zipfile

import postgres

PROGRAM = os.environ.get("QUILLET_ITEMHUB", "")
NOBODY, PLAIN = postgres.NOBODY, postgres.PLAIN
# Which database the tests run on.
ON_POSTGRESQL = os.environ.get("QUILLET_ITEMHUB_DATABASE") == "postgresql"
ROLES = ("reader", "writer", "admin")
SKIPPED = 77  # How a test program ends that had nothing to test with.
PASSWORD = "correct horse battery"
TUS = {"Tus-Resumable": "1.0.0"}
# One red point.
PNG = base64.b64decode("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8BQDwAEhQGAhKmMIQAAAABJRU5ErkJggg==")


class Answer:
    def __init__(self, response, body):
        self.status, self.body = response.status, body
        self.headers = {name.lower(): value for name, value in response.getheaders()}

    @property
    def json(self):
        return json.loads(self.body)

    def __repr__(self):
        return f"<{self.status} {self.body[:200]!r}>"


class Client:
    """One account's way to the service, by a connection that is kept open."""

    def __init__(self, port, token=None, customer=None):
        self.port, self.token, self.customer = port, token, customer
        self.connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)

    def __del__(self):
        self.connection.close()

    def __call__(self, method, path, json_body=None, headers=None, body=None):
        headers = dict(headers or {})
        if self.token:
            headers.setdefault("Authorization", f"Bearer {self.token}")
        if json_body is not None:
            body = json.dumps(json_body).encode()
            headers.setdefault("Content-Type", "application/json")
        if self.customer:
            path += ("&" if "?" in path else "?") + urllib.parse.urlencode({"customer": self.customer})
        try:
            self.connection.request(method, path, body, headers)
            response = self.connection.getresponse()
        except (http.client.RemoteDisconnected, BrokenPipeError, ConnectionResetError):
            self.connection.close()
            raise
        answer = Answer(response, response.read())
        if answer.headers.get("connection") == "close":
            self.connection.close()
        return answer

    def upload(self, data, **metadata):
        """A whole upload; its id."""
        made = self.begin(len(data), **metadata)
        assert made.status == 201, made
        upload = made.headers["location"].rsplit("/", 1)[1]
        sent = self.send(upload, 0, data)
        assert sent.status == 204, sent
        return upload

    def begin(self, length, **metadata):
        headers = {**TUS, "Upload-Length": str(length)}
        if metadata:
            headers["Upload-Metadata"] = ",".join(
                f"{name} {base64.b64encode(value.encode()).decode()}" for name, value in metadata.items())
        return self("POST", "/uploads", headers=headers)

    def send(self, upload, offset, data, **headers):
        return self("PATCH", f"/uploads/{upload}", body=data, headers={
            **TUS, "Upload-Offset": str(offset), "Content-Type": "application/offset+octet-stream",
            **{name.replace("_", "-"): value for name, value in headers.items()}})

    def offset(self, upload):
        return int(self("HEAD", f"/uploads/{upload}", headers=TUS).headers["upload-offset"])


class Service:
    """A service for a team in a folder of its own."""

    def __init__(self, **settings):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="itemhub-"))
        self.folder.chmod(0o755)
        self.data = self.folder / "data"
        self.data.mkdir()
        if PLAIN:
            os.chown(self.data, NOBODY, NOBODY)
        self.database, self.blobs = self.data / "items.sqlite", self.data / "blobs"
        self.config = self.folder / "config.json"
        self.environment, self.wall, self.process, self.port = {}, [], None, None
        # Where a test brings a database of its own, there is no other one.
        self.server = postgres.shared() if ON_POSTGRESQL and "name" not in settings.get("database", {}) else None
        self.reach = self.server.reach(self.server.database()) if self.server else {"name": str(self.database)}
        self.configure(**settings)

    def sql(self, statement):
        """What the database itself answers, in rows, beside the service."""
        if ON_POSTGRESQL:
            return [tuple(int(value) if value.lstrip("-").isdigit() else value for value in row)
                    for row in self.server.sql(statement, self.reach["name"])]
        with contextlib.closing(sqlite3.connect(self.database)) as database, database:
            return database.execute(statement).fetchall()

    def stored(self):
        """Everything that the database keeps, as a text to search in."""
        if ON_POSTGRESQL:
            dump = self.server.run("pg_dump", "-h", "127.0.0.1", "-p", self.server.port, "-U", postgres.USER, self.reach["name"])
            return re.sub(r"(?m)^\\(un)?restrict .*$", "", dump)  # Made anew each time.
        return b"".join(path.read_bytes() for path in self.data.glob("items.sqlite*")).decode("latin-1")

    @contextlib.contextmanager
    def locked(self):
        """While it is entered, somebody else changes the database."""
        if ON_POSTGRESQL:
            with self.server.transaction("LOCK TABLE item IN EXCLUSIVE MODE", self.reach["name"]):
                yield
            return
        with contextlib.closing(sqlite3.connect(self.database, isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            yield
            other.execute("ROLLBACK")

    def restore(self, backup):
        """Begins with the database of a backup."""
        if ON_POSTGRESQL:
            self.server.run("pg_restore", "-h", "127.0.0.1", "-p", self.server.port, "-U", postgres.USER, "-d", self.reach["name"], backup)
        else:
            shutil.copy(backup, self.database)

    def configure(self, **settings):
        self.database_settings = {**self.reach, **settings.pop("database", {})}
        self.config.write_text(json.dumps({
            "database": self.database_settings, "blobs": str(settings.pop("blobs", self.blobs)),
            "server": {"port": 0, **settings.pop("server", {})},
            "limits": {"requestsPerSecond": 0, **settings.pop("limits", {})}, **settings}))

    def beside(self):
        """Another process of the same service: with the same database, contents and key."""
        other = Service(database=self.database_settings)
        other.config.write_text(self.config.read_text())
        return other.start()

    def run(self, *words, **more):
        return subprocess.Popen([str(word) for word in [*PLAIN, *self.wall, PROGRAM, "--serve", self.config, *words]],
                                stderr=subprocess.PIPE, env={**os.environ, **self.environment}, **more)

    def start(self, port=None):
        self.process = self.run(*(["--port", port] if port else []))
        for line in self.process.stderr:
            if b"serves at" in line:
                self.port = int(line.rsplit(b" ", 1)[1])
                break
        else:
            self.process.wait()
        os.set_blocking(self.process.stderr.fileno(), False)
        return self

    def log(self):
        return (self.process.stderr.read() or b"").decode()

    def stop(self, sent=signal.SIGTERM):
        if self.process and self.process.poll() is None:
            self.process.send_signal(sent)
        code = self.process.wait(timeout=30)
        self.process.stderr.close()
        return code

    def close(self):
        if self.process and self.process.poll() is None:
            self.stop(signal.SIGKILL)
        shutil.rmtree(self.folder)

    def admin(self, *words, password=None, check=True):
        result = subprocess.run([*PLAIN, PROGRAM, "admin", self.config, *map(str, words)], text=True,
                                input=f"{password}\n" if password else "", capture_output=True)
        if check and result.returncode != 0:
            raise AssertionError(f"admin {words}: {result.stderr}")
        return result if not check else result.stdout.strip()

    def client(self, token=None, customer=None):
        return Client(self.port, token, customer)

    def member(self, customer, name, role, workspace="all", scope="admin"):
        """A client of a new account with that role."""
        self.admin("account", "add", customer, name, password=PASSWORD)
        if role:
            self.admin("member", "set", customer, name, workspace, role)
        return self.client(self.admin("token", "add", customer, name, scope, 1))


class ServiceTest(unittest.TestCase):
    """With a service that has one customer, "acme", one workspace and its administrator."""

    settings = {}

    @classmethod
    def setUpClass(cls):
        cls.service = Service(**cls.settings)
        cls.addClassCleanup(cls.service.close)
        cls.service.admin("customer", "add", "acme")
        cls.workspace = int(cls.service.admin("workspace", "add", "acme", "Designs"))
        cls.service.start()
        cls.boss = cls.service.member("acme", "boss", "admin")

    def item(self, caption="An item", **more):
        made = self.boss("POST", f"/workspaces/{self.workspace}/items", {"caption": caption, **more})
        self.assertEqual(made.status, 201, made)
        return made.json["id"]

    def attachment(self, data=b"content", item=None, name="part.tdsn"):
        made = self.boss("POST", f"/items/{item or self.item()}/attachments",
                         {"name": name, "docType": "VeloraDocType", "upload": self.boss.upload(data)})
        self.assertEqual(made.status, 201, made)
        return made.json["id"]


def sha256(data):
    return hashlib.sha256(data).hexdigest()


def package(picture, name="thumbnail.png", compressed=zipfile.ZIP_STORED):
    """A document as the program writes one, as far as the service looks into it."""
    made = io.BytesIO()
    with zipfile.ZipFile(made, "w", compressed) as archive:
        archive.writestr("mimetype", "application/vnd.quillet.document")
        archive.writestr(name, picture)
    return made.getvalue()


def pkce(verifier):
    """What a program that signs in with a browser says of what it will show (RFC 7636)."""
    return base64.urlsafe_b64encode(hashlib.sha256(verifier.encode()).digest()).decode().rstrip("=")


def main():
    if not PROGRAM or not shutil.which("setpriv"):
        sys.exit("QUILLET_ITEMHUB must name the program, and setpriv must be installed.")
    if ON_POSTGRESQL and (absent := postgres.missing()):
        if os.environ.get("QUILLET_SERVERS") == "required":
            sys.exit(f"not installed: {absent}")
        print(f"NOTICE: not installed: {absent}")
        sys.exit(SKIPPED)
    unittest.main()
