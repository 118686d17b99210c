#!/usr/bin/env python3
"""Starts a real token server (Glewlwyd) and a drive that takes its tokens (Apache), for as long as standard input is open.

At the start it prints the drive's address, or "missing" and what isn't installed. Programs register themselves at the token server, and
have to use PKCE. Lines of standard input are orders, each answered by "done":

    sign-in PAGE         somebody opens that page, signs in, and lets the program have what it asks for
    sign-in-forged PAGE  the same, but the browser comes back with another issuer's name
    brief, lasting       access tokens given from now on are good for a second or for an hour
    revoke               refresh tokens given up to now are no longer taken
    misname              the drive names an issuer whose metadata are another one's
"""

import http.cookiejar
import json
import os
import pathlib
import secrets
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time
import urllib.error
import urllib.parse
import urllib.request

import servers
from ports import free_port

GLEWLWYD = "/usr/bin/glewlwyd"
SCHEMA = "/usr/share/dbconfig-common/data/glewlwyd/install/sqlite3"
NEEDED = [*servers.NEEDED["apache"], f"{servers.APACHE_MODULES}/mod_oauth2.so", GLEWLWYD, SCHEMA]
SCOPE = "drive"
HOUR = 3600


class NoRedirect(urllib.request.HTTPRedirectHandler):
    def redirect_request(self, *_):
        return None


class Browser:
    """Keeps cookies, and shows where it is sent instead of going there."""

    def __init__(self):
        cookies = urllib.request.HTTPCookieProcessor(http.cookiejar.CookieJar())
        self.opener = urllib.request.build_opener(cookies, NoRedirect, urllib.request.ProxyHandler({}))

    def ask(self, method, url, content=None, expected=200):
        """The answer's text, or where it sends to."""
        data = None if content is None else json.dumps(content).encode()
        request = urllib.request.Request(url, data=data, headers={"Content-Type": "application/json"}, method=method)
        try:
            answer = self.opener.open(request, timeout=10)
        except urllib.error.HTTPError as error:
            answer = error
        with answer:
            text = answer.read().decode()
            if answer.status != expected:
                raise RuntimeError(f"{method} {url} was answered with {answer.status} {text}")
            return answer.headers["Location"] if expected == 302 else text


class Process:
    """A server in a folder of its own, at a port that was free."""

    def __init__(self, folder):
        self.folder, self.process = folder, None
        folder.mkdir()

    @property
    def address(self):
        return f"http://127.0.0.1:{self.port}"

    def start(self):
        end = time.monotonic() + servers.SECONDS_TO_START
        while time.monotonic() < end:
            self.port = free_port()
            with open(self.folder / "log", "ab") as log:
                self.process = subprocess.Popen(self.command(), cwd=self.folder, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                                start_new_session=True, preexec_fn=servers.end_with_parent)
            while self.process.poll() is None and time.monotonic() < end:
                try:
                    self.check()
                    return
                except (OSError, RuntimeError):
                    time.sleep(0.02)
            self.stop()
        raise RuntimeError(f"{self.folder.name} doesn't start:\n{(self.folder / 'log').read_text(errors='replace')[-2000:]}")

    def stop(self):
        if self.process:
            servers.signal_group(self.process.pid, signal.SIGKILL)
            self.process.wait()

    def configuration(self, name, **values):
        text = (servers.HERE / "Configurations" / name).read_text()
        for key, value in (values | {"FOLDER": self.folder, "PORT": self.port}).items():
            text = text.replace(f"@{key}@", str(value))
        (self.folder / name).write_text(text)
        return str(self.folder / name)


class TokenServer(Process):
    """Knows one person and the drive's scope."""

    user, password = servers.USER, secrets.token_hex(8)

    @property
    def issuer(self):
        return f"{self.address}/api/oidc"

    def command(self):
        database = self.folder / "database"
        database.unlink(missing_ok=True)
        connection = sqlite3.connect(database)
        connection.executescript("PRAGMA synchronous = OFF;" + pathlib.Path(SCHEMA).read_text())
        connection.close()
        return [GLEWLWYD, "-c", self.configuration("glewlwyd.conf", ADDRESS=self.address)]

    def check(self):
        Browser().ask("GET", f"{self.address}/config")

    def set_up(self):
        key = self.folder / "key.pem"
        # No elliptic curve: a coordinate that begins with a zero byte is published without it, and the drive refuses such keys.
        subprocess.run(["openssl", "genrsa", "-out", key, "2048"], check=True, stderr=subprocess.DEVNULL)
        public = subprocess.run(["openssl", "rsa", "-in", key, "-pubout"], check=True, capture_output=True, text=True).stdout
        self.parameters = {
            "iss": self.issuer, "jwt-type": "rsa", "jwt-key-size": "256", "key": key.read_text(), "cert": public, "jwks-show": True,
            "access-token-duration": HOUR, "refresh-token-duration": 24 * HOUR, "refresh-token-one-use": "always",
            "code-duration": 60, "auth-type-code-enabled": True, "auth-type-code-revoke-replayed": True, "auth-type-refresh-enabled": True,
            "allow-non-oidc": True, "oauth-as-iss-id": True, "pkce-allowed": True, "pkce-required": True, "subject-type": "public",
            "register-client-allowed": True, "register-client-auth-scope": [], "register-client-credentials-scope": [],
            "allowed-scope": ["openid", SCOPE]}
        self.admin = Browser()
        first = "password"
        self.ask("POST", "auth/", {"username": "admin", "password": first})
        self.ask("PUT", "profile/password", {"old_password": first, "password": secrets.token_hex(16)})
        self.ask("POST", "scope/", {"name": SCOPE, "display_name": "The drive", "description": "Files on the drive",
                                    "password_required": True, "password_max_age": 0, "scheme": {}})
        self.ask("POST", "user/", {"username": self.user, "password": self.password, "scope": ["openid", SCOPE, "g_profile"]})
        for name in ("oidc", "other"):
            self.ask("POST", "mod/plugin/", self.plugin(name))

    def ask(self, method, path, content=None):
        return self.admin.ask(method, f"{self.address}/api/{path}", content)

    def plugin(self, name):
        return {"module": "oidc", "name": name, "display_name": name, "order_rank": 0, "parameters": self.parameters}

    def set_duration(self, seconds):
        self.parameters["access-token-duration"] = seconds
        self.ask("PUT", "mod/plugin/oidc", self.plugin("oidc"))
        self.ask("PUT", "mod/plugin/oidc/reset")

    def signed_in(self):
        browser = Browser()
        browser.ask("POST", f"{self.address}/api/auth/", {"username": self.user, "password": self.password})
        return browser

    def sign_in(self, page, issuer=None):
        """Does what the login page's script does in a browser, up to the program's own page."""
        login = dict(urllib.parse.parse_qsl(urllib.parse.urlsplit(Browser().ask("GET", page, expected=302)).query))
        browser = self.signed_in()
        browser.ask("PUT", f"{self.address}/api/auth/grant/{login['client_id']}/", {"scope": login["scope"]})
        back = urllib.parse.urlsplit(browser.ask("GET", login["callback_url"] + "&g_continue", expected=302))
        if issuer:
            query = dict(urllib.parse.parse_qsl(back.query)) | {"iss": issuer}
            back = back._replace(query=urllib.parse.urlencode(query))
        browser.ask("GET", back.geturl())

    def revoke(self):
        browser, tokens = self.signed_in(), f"{self.address}/api/oidc/token/"
        for token in json.loads(browser.ask("GET", tokens)):
            if token["enabled"]:
                browser.ask("DELETE", tokens + urllib.parse.quote(token["token_hash"], safe=""))


class Drive(Process):
    def __init__(self, folder, issuer):
        super().__init__(folder)
        self.issuer = issuer
        (folder / "site" / "dav").mkdir(parents=True)
        self.place = ".well-known/oauth-protected-resource/dav"
        (folder / "site" / self.place).parent.mkdir(parents=True)

    def command(self):
        self.name(self.issuer)
        file = self.configuration("apache_tokens.conf", MODULES=servers.APACHE_MODULES, ISSUER=self.issuer, SCOPE=SCOPE)
        return ["/usr/sbin/apache2", "-DFOREGROUND", "-f", file]

    def name(self, issuer):
        self.metadata = json.dumps({"resource": f"{self.address}/dav", "authorization_servers": [issuer], "scopes_supported": [SCOPE]})
        (self.folder / "site" / self.place).write_text(self.metadata)

    def check(self):
        if Browser().ask("GET", f"{self.address}/{self.place}") != self.metadata:
            raise RuntimeError("another server has the port")


def sign_in(server, page, issuer=None):
    try:
        server.sign_in(page, issuer)
    except (OSError, RuntimeError, KeyError) as error:
        print("The person couldn't sign in:", error, file=sys.stderr, flush=True)


def follow(order, server, drive):
    name, _, page = order.partition(" ")
    if name == "sign-in":
        threading.Thread(target=sign_in, args=(server, page), daemon=True).start()
    elif name == "sign-in-forged":
        threading.Thread(target=sign_in, args=(server, page, f"{server.address}/api/other"), daemon=True).start()
    elif name == "brief":
        server.set_duration(1)
    elif name == "lasting":
        server.set_duration(HOUR)
    elif name == "revoke":
        server.revoke()
    elif name == "misname":
        drive.name(f"{server.address}/api/other")


def main():
    missing = [file for file in NEEDED if not os.path.exists(file)]
    if missing:
        return print("missing", ", ".join(missing), flush=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with tempfile.TemporaryDirectory(prefix="quillet-server-", ignore_cleanup_errors=True) as folder:
        started = []
        try:
            server = TokenServer(pathlib.Path(folder) / "glewlwyd")
            started.append(server)
            server.start()
            server.set_up()
            drive = Drive(pathlib.Path(folder) / "apache", server.issuer)
            started.append(drive)
            drive.start()
            print(f"{drive.address}/dav", flush=True)
            for line in sys.stdin:
                follow(line.strip(), server, drive)
                print("done", flush=True)
        finally:
            for process in started:
                process.stop()


if __name__ == "__main__":
    main()
