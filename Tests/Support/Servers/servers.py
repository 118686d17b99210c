#!/usr/bin/env python3
"""Starts a WebDAV server of those that tests and benchmarks talk to, for as long as its standard input is open.

    servers.py KIND [--tls] [--digest]

The server belongs to the user who calls, listens on this machine alone at a port that was free, and has a folder of its own with
its log, its locks and its drive, which goes with it. Lines of standard input are orders, each answered by one line with
tabs between its fields:

    (at the start)  ready ADDRESS USER PASSWORD FOLDER, once it answers; FOLDER/drive is the drive, but for svn, FOLDER/log the log
                    missing FILES, if something isn't installed
                    failed REASON
    stop            stopped; the drive stays
    start           ready ..., at the same port
    kill            stopped; as stop, but without giving it time for anything
"""

import argparse
import base64
import ctypes
import hashlib
import os
import pathlib
import secrets
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

from ports import free_port

HERE = pathlib.Path(__file__).resolve().parent
APACHE_MODULES = "/usr/lib/apache2/modules"
NGINX_MODULES = "/usr/lib/nginx/modules"
USER = "ada"
SECONDS_TO_START = 20

APACHE = ["/usr/sbin/apache2", f"{APACHE_MODULES}/mod_dav.so"]
# What each needs of the machine.
NEEDED = {
    "apache": [*APACHE, f"{APACHE_MODULES}/mod_dav_fs.so"],
    "svn": [*APACHE, f"{APACHE_MODULES}/mod_dav_svn.so", "/usr/bin/svnadmin"],
    "nginx": ["/usr/sbin/nginx", f"{NGINX_MODULES}/ngx_http_dav_ext_module.so"],
    "lighttpd": ["/usr/sbin/lighttpd", "/usr/lib/lighttpd/mod_webdav.so"],
    "rclone": ["/usr/bin/rclone"],
    "sabre": ["/usr/bin/php", "/usr/share/php/Sabre/autoload.php"],
}


class Missing(Exception):
    """Something isn't installed."""


class TestServer:
    """One server; a context manager whose end stops it and removes its folder."""

    def __init__(self, kind, tls=False, digest=False):
        missing = [file for file in NEEDED[kind] if not os.path.exists(file)]
        if missing:
            raise Missing(", ".join(missing))
        self.kind, self.tls, self.digest = kind, tls, digest
        self.user, self.password = USER, secrets.token_hex(8)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-server-"))
        self.drive = self.folder / "drive"
        self.drive.mkdir()
        self.log = self.folder / "log"
        self.port = 0
        self.process = None
        self._write_users()
        if tls:
            self._write_certificate()
        if kind == "svn":
            subprocess.run(["svnadmin", "create", self.folder / "repository"], check=True)

    @property
    def address(self):
        return f"{'https' if self.tls else 'http'}://127.0.0.1:{self.port}/"

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.remove()
            raise
        return self

    def __exit__(self, *_):
        self.remove()

    def start(self):
        """Starts it at the port that it had, else at a free one, which somebody else may have taken meanwhile."""
        chosen = bool(self.port)
        end = time.monotonic() + SECONDS_TO_START
        while True:
            self.port = self.port if chosen else free_port()
            self._launch()
            while self.process.poll() is None and time.monotonic() < end:
                if self._answers():
                    return
                time.sleep(0.02)
            self.stop(signal.SIGKILL)
            if time.monotonic() >= end:
                raise RuntimeError(f"{self.kind} doesn't start:\n{self.log.read_text(errors='replace')[-2000:]}")
            time.sleep(0.05)

    def stop(self, how=signal.SIGTERM):
        if not self.process:
            return
        signal_group(self.process.pid, how)
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            pass
        # Whatever the first process left behind of its own.
        signal_group(self.process.pid, signal.SIGKILL)
        self.process.wait()
        self.process = None

    def remove(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _write_users(self):
        digest = base64.b64encode(hashlib.sha1(self.password.encode()).digest()).decode()
        (self.folder / "users").write_text(f"{self.user}:{{SHA}}{digest}\n")
        (self.folder / "plain_users").write_text(f"{self.user}:{self.password}\n")

    def _write_certificate(self):
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2",
                        "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1",
                        "-keyout", self.folder / "key.pem", "-out", self.folder / "certificate.pem"],
                       check=True, stderr=subprocess.DEVNULL)

    def _configuration(self, name, **values):
        text = (HERE / "Configurations" / name).read_text()
        values |= {"FOLDER": self.folder, "DRIVE": self.drive, "PORT": self.port}
        for key, value in values.items():
            text = text.replace(f"@{key}@", str(value))
        file = self.folder / name
        file.write_text(text)
        return str(file)

    def _command(self):
        return getattr(self, f"_{self.kind}")()

    def _apache(self):
        return self._apache_with(["dav_fs"], f"DavLockDB {self.folder}/locks", "Dav On")

    def _svn(self):
        return self._apache_with(["dav_svn"], "", f"Dav svn\nSVNPath {self.folder}/repository\nSVNAutoversioning on")

    def _apache_with(self, modules, outside, inside):
        tls = ""
        if self.tls:
            modules = [*modules, "ssl"]
            tls = (f"SSLEngine on\nSSLCertificateFile {self.folder}/certificate.pem\n"
                   f"SSLCertificateKeyFile {self.folder}/key.pem")
        load = "\n".join(f"LoadModule {module}_module {APACHE_MODULES}/mod_{module}.so" for module in modules)
        file = self._configuration("apache.conf", MODULES=APACHE_MODULES, LOAD=f"{load}\n{outside}", TLS=tls, DAV=inside)
        return ["/usr/sbin/apache2", "-DFOREGROUND", "-f", file]

    def _nginx(self):
        return ["/usr/sbin/nginx", "-e", str(self.log), "-c", self._configuration("nginx.conf", MODULES=NGINX_MODULES)]

    def _lighttpd(self):
        method = "digest" if self.digest else "basic"
        return ["/usr/sbin/lighttpd", "-D", "-f", self._configuration("lighttpd.conf", METHOD=method)]

    def _rclone(self):
        return ["/usr/bin/rclone", "--config", str(self.folder / "none"), "--cache-dir", str(self.folder / "cache"),
                "serve", "webdav", str(self.drive), "--addr", f"127.0.0.1:{self.port}"]

    def _sabre(self):
        return ["/usr/bin/php", "-d", "post_max_size=0", "-d", "memory_limit=-1", "-d", "output_buffering=0",
                "-S", f"127.0.0.1:{self.port}", str(HERE / "Configurations" / "server.php")]

    def _launch(self):
        environment = {"PATH": "/usr/bin:/bin:/usr/sbin", "HOME": str(self.folder), "TMPDIR": str(self.folder), "LANG": "C.UTF-8",
                       "RCLONE_USER": self.user, "RCLONE_PASS": self.password, "PHP_CLI_SERVER_WORKERS": "4",
                       "QUILLET_USER": self.user, "QUILLET_PASSWORD": self.password, "QUILLET_FOLDER": str(self.folder)}
        command = self._command()
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=environment,
                                            cwd=self.folder, start_new_session=True, preexec_fn=end_with_parent)

    def _answers(self):
        """Whether it is this server that answers: no other one knows the password."""
        try:
            with self.request("OPTIONS", "") as answer:
                return answer.status < 300
        except (OSError, urllib.error.URLError):
            return False

    def request(self, method, path, data=None, headers=None):
        """Asks something of it with the standard library, which shares nothing with the client under test."""
        request = urllib.request.Request(self.address + path, data=data, headers=headers or {}, method=method)
        passwords = urllib.request.HTTPPasswordMgrWithPriorAuth()
        passwords.add_password(None, self.address, self.user, self.password, is_authenticated=not self.digest)
        handlers = [urllib.request.HTTPBasicAuthHandler(passwords), urllib.request.HTTPDigestAuthHandler(passwords),
                    urllib.request.ProxyHandler({})]
        if self.tls:
            import ssl
            handlers.append(urllib.request.HTTPSHandler(context=ssl._create_unverified_context()))
        return urllib.request.build_opener(*handlers).open(request, timeout=10)


def end_with_parent():
    ctypes.CDLL(None).prctl(1, signal.SIGTERM)  # PR_SET_PDEATHSIG


def signal_group(group, which):
    try:
        os.killpg(group, which)
    except ProcessLookupError:
        pass


def tell(*fields):
    print(*fields, sep="\t", flush=True)


def serve(options):
    """Follows orders until there can be no more."""
    with TestServer(options.kind, options.tls, options.digest) as server:
        def ready():
            tell("ready", server.address, server.user, server.password, server.folder)

        ready()
        for line in sys.stdin:
            order = line.strip()
            if order == "start":
                server.start()
                ready()
            elif order in ("stop", "kill"):
                server.stop(signal.SIGKILL if order == "kill" else signal.SIGTERM)
                tell("stopped")


def main():
    parser = argparse.ArgumentParser(description="Starts a WebDAV server for as long as the standard input is open.")
    parser.add_argument("kind", choices=sorted(NEEDED))
    parser.add_argument("--tls", action="store_true", help="https with a certificate that nobody signed (apache, svn)")
    parser.add_argument("--digest", action="store_true", help="Digest instead of Basic (lighttpd)")
    options = parser.parse_args()
    # Ending by a signal is an end like any other: the server and its folder go.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    signal.signal(signal.SIGINT, lambda *_: sys.exit(1))
    try:
        serve(options)
    except Missing as missing:
        tell("missing", missing)
    except (OSError, RuntimeError, subprocess.CalledProcessError) as error:
        tell("failed", " ".join(str(error).split()))


if __name__ == "__main__":
    main()
