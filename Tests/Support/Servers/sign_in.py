#!/usr/bin/env python3
"""Stands in for servers that a person signs in to by a browser, for as long as its standard input is open.

It is strict: what the documentation of the login flow and RFC 6749, 7591, 7636, 8252, 8414 and 9728 forbid to a client is refused, and
why goes to standard error. At its start it prints its address. Below /remote.php/webdav is a drive whose passwords the login flow gives
(version 2, as the open cloud servers document it); at /dav is one that takes tokens. Lines of standard input are orders, each answered
by "done":

    refuse   whoever is asked from now on lets nobody in
    expire   access tokens given up to now are no longer taken
    revoke   refresh tokens given up to now neither
    pretend  the browser comes back with the name of another server
    expose   tokens are got where others can read them
"""

import base64
import hashlib
import http.server
import json
import re
import secrets
import sys
import threading
import urllib.parse

FOLDER = """<?xml version="1.0"?><d:multistatus xmlns:d="DAV:"><d:response><d:href>{}</d:href><d:propstat><d:prop><d:resourcetype>
<d:collection/></d:resourcetype></d:prop><d:status>HTTP/1.1 200 OK</d:status></d:propstat></d:response></d:multistatus>"""
USER = "ada"
FORM = "application/x-www-form-urlencoded"


class Refused(Exception):
    def __init__(self, status, why, error="invalid_request"):
        super().__init__(why)
        self.status, self.error = status, error


def demand(condition, why, error="invalid_request", status=400):
    if not condition:
        raise Refused(status, why, error)


class State:
    def __init__(self):
        self.lock = threading.Lock()
        self.refuses = self.pretends = self.exposes = False
        self.flows = {}      # Poll token: [name of the login page, password once it is granted].
        self.passwords = set()
        self.clients = {}    # Client: addresses that it may send browsers back to.
        self.codes = {}      # Code: what it was asked with.
        self.access, self.refresh = set(), {}


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    state = State()

    @property
    def here(self):
        return f"http://127.0.0.1:{self.server.server_port}"

    def handle_request(self):
        self.url = urllib.parse.urlsplit(self.path)
        self.body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        try:
            with self.state.lock:
                self.route()
        except Refused as refused:
            print(self.command, self.url.path, refused, file=sys.stderr, flush=True)
            self.answer(refused.status, {"error": refused.error})

    do_GET = do_POST = do_PROPFIND = handle_request

    def route(self):
        routes = {
            ("GET", "/status.php"): lambda: self.answer(200, {"installed": True, "maintenance": False, "version": "28.0.1.1"}),
            ("PROPFIND", "/remote.php/webdav/"): self.drive_of_passwords,
            ("POST", "/index.php/login/v2"): self.begin_flow,
            ("POST", "/login/v2/poll"): self.poll_flow,
            ("PROPFIND", "/dav/"): self.drive_of_tokens,
            ("GET", "/.well-known/oauth-protected-resource/dav"): lambda: self.answer(200, {
                "resource": self.here + "/dav", "authorization_servers": [self.here + "/login"], "scopes_supported": ["files"]}),
            ("GET", "/.well-known/oauth-authorization-server/login"): lambda: self.answer(200, {
                "issuer": self.here + "/login", "authorization_endpoint": self.here + "/login/ask?tenant=1",
                "token_endpoint": ("http://login.invalid" if self.state.exposes else self.here) + "/login/token",
                "registration_endpoint": self.here + "/login/register",
                "response_types_supported": ["code"], "code_challenge_methods_supported": ["S256"]}),
            ("POST", "/login/register"): self.register,
            ("GET", "/login/ask"): self.ask,
            ("POST", "/login/token"): self.token,
        }
        route = routes.get((self.command, self.url.path))
        if route:
            return route()
        if self.command == "POST" and self.url.path.startswith("/login/v2/flow/"):
            return self.grant_flow(self.url.path.rsplit("/", 1)[1])
        raise Refused(404, "nothing is there")

    def answer(self, status, content, *headers):
        data = content.encode() if isinstance(content, str) else json.dumps(content).encode()
        self.send_response(status)
        for header in headers:
            self.send_header(*header)
        self.send_header("Content-Type", "text/xml" if isinstance(content, str) else "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def form(self):
        demand(self.headers.get("Content-Type", "").split(";")[0] == FORM, "no form")
        fields = urllib.parse.parse_qsl(self.body.decode(), keep_blank_values=True, strict_parsing=True)
        demand(len(dict(fields)) == len(fields), "a field is there twice")
        return dict(fields)

    # The login flow.

    def drive_of_passwords(self):
        right = {"Basic " + base64.b64encode(f"{USER}:{password}".encode()).decode() for password in self.state.passwords}
        if self.headers.get("Authorization") in right:
            return self.answer(207, FOLDER.format("/remote.php/webdav/"))
        return self.answer(401, {}, ("WWW-Authenticate", 'Basic realm="drive", charset="UTF-8"'))

    def begin_flow(self):
        # The person sees by it who wants the password.
        demand("Quillet" in self.headers.get("User-Agent", ""), "the client doesn't say who it is")
        demand("Authorization" not in self.headers, "nobody is signed in yet")
        token, page = secrets.token_urlsafe(96), secrets.token_urlsafe(96)
        self.state.flows[token] = [page, None]
        self.answer(200, {"poll": {"token": token, "endpoint": self.here + "/login/v2/poll"}, "login": f"{self.here}/login/v2/flow/{page}"})

    def grant_flow(self, page):
        flow = next((flow for flow in self.state.flows.values() if flow[0] == page and not flow[1]), None)
        demand(flow, "no such login page", status=404)
        flow[1] = secrets.token_urlsafe(54)
        self.answer(200, {})

    def poll_flow(self):
        token = self.form().get("token")
        demand(not self.state.refuses, "refused", status=403)
        if not self.state.flows.get(token, [None, None])[1]:
            return self.answer(404, [])
        password = self.state.flows.pop(token)[1]
        self.state.passwords.add(password)
        return self.answer(200, {"server": self.here, "loginName": USER, "appPassword": password})

    # OAuth 2.

    def drive_of_tokens(self):
        if self.headers.get("Authorization", "").removeprefix("Bearer ") in self.state.access:
            return self.answer(207, FOLDER.format("/dav/"))
        return self.answer(401, {}, ("WWW-Authenticate",
                                     f'Bearer resource_metadata="{self.here}/.well-known/oauth-protected-resource/dav"'))

    def register(self):
        wish = json.loads(self.body)
        addresses = wish.get("redirect_uris", [])
        demand(addresses and all(re.match(r"http://127\.0\.0\.1:\d+/", address) for address in addresses),
               "not an address of the client's own machine", "invalid_redirect_uri")
        demand(wish.get("token_endpoint_auth_method") == "none", "a client of this kind keeps no secret")
        client = secrets.token_hex(8)
        self.state.clients[client] = addresses
        self.answer(201, wish | {"client_id": client})

    def ask(self):
        asked = urllib.parse.parse_qsl(self.url.query, strict_parsing=True)
        demand(len(dict(asked)) == len(asked), "a parameter is there twice")
        asked = dict(asked)
        demand(asked.get("tenant") == "1", "the address's own parameters are gone")
        redirect = asked.get("redirect_uri")
        demand(redirect in self.state.clients.get(asked.get("client_id"), []), "not an address of this client")
        demand(asked.get("response_type") == "code", "no code wanted")
        demand(asked.get("code_challenge_method") == "S256", "no challenge by SHA-256")
        demand(re.fullmatch(r"[A-Za-z0-9_-]{43}", asked.get("code_challenge", "")), "no challenge")
        demand(len(asked.get("state", "")) >= 22, "a state that can be guessed")
        demand(asked.get("scope") == "files", "not the drive's scope")
        back = {"state": asked["state"], "iss": self.here + ("/other" if self.state.pretends else "/login")}
        if self.state.refuses:
            back["error"] = "access_denied"
        else:
            back["code"] = secrets.token_urlsafe(32) + "+/="
            self.state.codes[back["code"]] = asked
        self.answer(302, {}, ("Location", f"{redirect}?{urllib.parse.urlencode(back)}"))

    def token(self):
        form = self.form()
        if form.get("grant_type") == "refresh_token":
            # Each is good for once.
            client = self.state.refresh.pop(form.get("refresh_token"), None)
            demand(client and client == form.get("client_id"), "not a refresh token of this client", "invalid_grant")
        else:
            demand(form.get("grant_type") == "authorization_code", "no known grant", "unsupported_grant_type")
            asked = self.state.codes.pop(form.get("code"), None)
            demand(asked, "no such code", "invalid_grant")
            client = form.get("client_id")
            demand(client == asked["client_id"], "another client's code", "invalid_grant")
            demand(form.get("redirect_uri") == asked["redirect_uri"], "another address", "invalid_grant")
            verifier = form.get("code_verifier", "")
            demand(re.fullmatch(r"[A-Za-z0-9._~-]{43,128}", verifier), "no verifier", "invalid_grant")
            challenge = base64.urlsafe_b64encode(hashlib.sha256(verifier.encode()).digest()).decode().rstrip("=")
            demand(challenge == asked["code_challenge"], "the verifier doesn't fit", "invalid_grant")
        access, refresh = secrets.token_urlsafe(32), secrets.token_urlsafe(32) + "+/="
        self.state.access.add(access)
        self.state.refresh[refresh] = client
        self.answer(200, {"access_token": access, "token_type": "bearer", "expires_in": 3600, "refresh_token": refresh},
                    ("Cache-Control", "no-store"))

    def log_message(self, *_):
        pass


def main():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print(f"http://127.0.0.1:{server.server_port}/", flush=True)
    for line in sys.stdin:
        with Handler.state.lock:
            if line.strip() == "refuse":
                Handler.state.refuses = True
            elif line.strip() == "expire":
                Handler.state.access.clear()
            elif line.strip() == "revoke":
                Handler.state.refresh.clear()
            elif line.strip() == "pretend":
                Handler.state.pretends = True
            elif line.strip() == "expose":
                Handler.state.exposes = True
        print("done", flush=True)


if __name__ == "__main__":
    main()
