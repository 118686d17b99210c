"""Signing in to the page by an outside provider: a real one, and one that says what isn't so."""

import base64
import html
import http.server
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.parse
import urllib.request

import service
from service import PASSWORD, ServiceTest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "Support/Servers"))
import token_drive  # noqa: E402

FORM = {"Content-Type": "application/x-www-form-urlencoded"}


class Visitor:
    """A browser that keeps cookies, and doesn't go where it is sent."""

    def __init__(self, client):
        self.client, self.cookies = client, {}

    def __call__(self, method, path, **more):
        headers = {"Cookie": "; ".join(f"{name}={value}" for name, value in self.cookies.items()), **more.pop("headers", {})}
        answer = self.client(method, path, headers=headers, **more)
        if given := answer.headers.get("set-cookie"):
            self.cookies.__setitem__(*given.split(";")[0].split("=", 1))
        return answer

    def sign_in(self, account):
        typed = urllib.parse.urlencode({"customer": "acme", "account": account, "password": PASSWORD})
        self("POST", "/dashboard", body=typed, headers=FORM)
        return self

    @property
    def proof(self):
        page = self("GET", "/dashboard").body.decode()
        return json.loads(page.split('id="session">')[1].split("</script>")[0])["proof"]

    def account(self):
        answer = self("GET", "/session")
        return answer.json.get("account")


class Given:
    """A service that knows a provider; the case beside it says which."""

    @classmethod
    def know(cls, issuer, client, secret):
        cls.service.stop()
        cls.service.configure(signIn={"issuer": issuer, "clientId": client, "clientSecret": secret, "title": "The company"})
        cls.service.start(port=cls.service.port)

    def visitor(self):
        return Visitor(self.service.client())

    def came_back(self, visitor, back, **changed):
        query = {**dict(urllib.parse.parse_qsl(urllib.parse.urlsplit(back).query)), **changed}
        return visitor("GET", "/dashboard/back?" + urllib.parse.urlencode(query), headers={"Sec-Fetch-Site": "cross-site"})

    def linking(self, account):
        """Somebody with an account, and where the provider is that it is to be linked with."""
        visitor = self.visitor().sign_in(account)
        return visitor, visitor("POST", "/dashboard/provider", headers={"X-CSRF-Token": visitor.proof}).json["url"]


class RealProviderTest(Given, ServiceTest):
    @classmethod
    def setUpClass(cls):
        absent = ", ".join(file for file in (token_drive.GLEWLWYD, token_drive.SCHEMA) if not os.path.exists(file))
        if absent and os.environ.get("QUILLET_SERVERS") == "required":
            raise AssertionError(f"not installed: {absent}")
        if absent:
            raise unittest.SkipTest(f"NOTICE: not installed: {absent}")
        super().setUpClass()
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="provider-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.folder.chmod(0o777)

        class Provider(token_drive.TokenServer):
            def command(self):
                words = super().command()
                for path in [self.folder, *self.folder.rglob("*")]:
                    path.chmod(0o777)
                return [*service.PLAIN, *words]

        cls.provider = Provider(cls.folder / "glewlwyd")
        cls.addClassCleanup(cls.provider.stop)
        cls.provider.start()
        cls.provider.set_up()
        cls.ada = cls.service.member("acme", "ada", "writer")
        cls.redirect = f"http://127.0.0.1:{cls.service.port}/dashboard/back"
        client = json.loads(token_drive.Browser().ask("POST", f"{cls.provider.issuer}/register", {
            "redirect_uris": [cls.redirect], "client_name": "Items", "grant_types": ["authorization_code"], "response_types": ["code"],
            "token_endpoint_auth_method": "client_secret_basic"}))
        cls.secret = client["client_secret"]
        cls.know(cls.provider.issuer, client["client_id"], cls.secret)

    def there(self, place):
        """What somebody does at the provider; where it sends the browser back to."""
        login = dict(urllib.parse.parse_qsl(urllib.parse.urlsplit(token_drive.Browser().ask("GET", place, expected=302)).query))
        browser = self.provider.signed_in()
        browser.ask("PUT", f"{self.provider.address}/api/auth/grant/{login['client_id']}/", {"scope": login["scope"]})
        return browser.ask("GET", login["callback_url"] + "&g_continue", expected=302)

    def test_who_has_linked_his_account_signs_in_by_the_provider(self):
        visitor, place = self.linking("ada")
        back = self.there(place)
        self.assertTrue(back.startswith(self.redirect + "?"))
        # Another browser has nothing of it, nor has this one a second time.
        self.assertEqual(self.came_back(self.visitor(), back).status, 400)
        self.assertEqual(self.came_back(visitor, back).status, 200)
        self.assertEqual(self.came_back(visitor, back).status, 400)

        stranger = self.visitor()
        self.assertIn("Sign in with The company", stranger("GET", "/dashboard").body.decode())
        place = stranger("GET", "/dashboard/provider").headers["location"]
        entered = self.came_back(stranger, self.there(place))
        self.assertEqual((entered.status, entered.headers.get("location")), (200, None))
        self.assertIn('content="0; url=../dashboard"', entered.body.decode())
        self.assertEqual(stranger.account(), "ada")
        noted = self.boss("GET", "/audit?limit=1").json["records"][0]
        self.assertEqual((noted["account"], noted["action"], noted["subject"]), ("ada", "sign-in", "Browser by the provider"))

        # One person there is one account here; and what was unlinked signs in no more.
        self.service.member("acme", "bob", "writer")
        other, place = self.linking("bob")
        self.assertEqual(self.came_back(other, self.there(place)).status, 409)
        self.service.admin("account", "disable", "acme", "ada")
        late = self.visitor()
        self.assertEqual(self.came_back(late, self.there(late("GET", "/dashboard/provider").headers["location"])).status, 403)
        self.service.admin("account", "enable", "acme", "ada")
        self.assertEqual(visitor("DELETE", "/dashboard/provider", headers={"X-CSRF-Token": visitor.proof}).status, 204)
        place = late("GET", "/dashboard/provider").headers["location"]
        self.assertEqual(self.came_back(late, self.there(place)).status, 403)
        self.assertIsNone(late.account())

    def test_a_program_signs_in_by_the_provider_on_the_page_that_it_opens(self):
        with tempfile.TemporaryDirectory() as profile, subprocess.Popen(
                [os.environ["QUILLET_ITEM_CLIENT"], profile, "browser", f"http://127.0.0.1:{self.service.port}/"],
                stdout=subprocess.PIPE, text=True) as program:
            page = program.stdout.readline().strip()
            self.assertIn("/oauth/authorize?", page)
            visitor, place = self.linking("ada")
            self.came_back(visitor, self.there(place))
            # Somebody else's page cannot begin it, and another browser cannot end it.
            stranger = self.visitor()
            shown = stranger("GET", page.removeprefix(f"http://127.0.0.1:{self.service.port}")).body.decode()
            begin = "/oauth/" + html.unescape(re.search(r'<a href="(.*?)">Sign in with The company', shown).group(1))
            self.assertEqual(stranger("GET", begin, headers={"Sec-Fetch-Site": "cross-site"}).status, 403)
            self.assertEqual(stranger("GET", begin.replace("127.0.0.1", "example.org")).status, 400)
            back = self.there(stranger("GET", begin).headers["location"])
            self.assertEqual(self.came_back(self.visitor(), back).status, 400)
            answer = self.came_back(stranger, back)
            self.assertEqual(answer.status, 303, answer)
            self.assertIsNone(stranger.account(), "the browser has no session by that")
            with urllib.request.urlopen(answer.headers["location"], timeout=30) as last:
                self.assertIn(b"You can close this page", last.read())
            self.assertEqual(program.stdout.read().strip(), "ada online")
            self.assertEqual(program.wait(), 0)
        noted = self.boss("GET", "/audit?limit=1").json["records"][0]
        self.assertEqual((noted["account"], noted["action"]), ("ada", "sign-in"))
        self.assertRegex(noted["subject"], ".+ by the provider$")
        # Who is linked to nobody may still type a password for the program.
        self.assertEqual(visitor("DELETE", "/dashboard/provider", headers={"X-CSRF-Token": visitor.proof}).status, 204)
        refused = self.came_back(stranger, self.there(stranger("GET", begin).headers["location"]))
        self.assertEqual(refused.status, 403)
        self.assertIn('action="../oauth/authorize"', refused.body.decode())
        self.assertIn('name="code_challenge"', refused.body.decode())

    def test_what_comes_back_otherwise_signs_nobody_in(self):
        visitor = self.visitor()
        for changed in ({"iss": "https://other.example.org"}, {"state": "x"}, {"code": ""}):
            back = self.there(visitor("GET", "/dashboard/provider").headers["location"])
            self.assertEqual(self.came_back(visitor, back, **changed).status, 400, changed)
        back = self.there(visitor("GET", "/dashboard/provider").headers["location"])
        self.assertEqual(self.came_back(visitor, back, code="invented").status, 502)
        back = self.there(visitor("GET", "/dashboard/provider").headers["location"])
        self.service.sql("UPDATE provider_visit SET expires_at = 1")
        self.assertEqual(self.came_back(visitor, back).status, 400)
        self.assertIsNone(visitor.account())
        self.assertEqual(visitor("POST", "/dashboard/provider").status, 401)
        self.assertNotIn(self.secret, self.service.log() + self.service.stored())


class False_(http.server.BaseHTTPRequestHandler):
    """A provider that answers as a test says."""

    claims, description, status = {}, {}, 200

    def do_GET(self):
        self.tell({"issuer": self.here, "authorization_endpoint": f"{self.here}/authorize", "token_endpoint": f"{self.here}/token",
                   **self.description})

    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        claims = {"iss": self.here, "aud": "items", "sub": "somebody", "exp": int(time.time()) + 60, "nonce": self.nonce, **self.claims}
        part = base64.urlsafe_b64encode(json.dumps({name: value for name, value in claims.items() if value is not None}).encode()).decode().rstrip("=")
        self.tell({"id_token": f"e30.{part}.x"})

    def tell(self, what):
        content = json.dumps(what).encode()
        self.send_response(self.status)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def log_message(self, *_):
        pass


class FalseProviderTest(Given, ServiceTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.provider = http.server.ThreadingHTTPServer(("127.0.0.1", 0), False_)
        threading.Thread(target=cls.provider.serve_forever, daemon=True).start()
        cls.addClassCleanup(cls.provider.server_close)
        cls.addClassCleanup(cls.provider.shutdown)
        False_.here = f"http://127.0.0.1:{cls.provider.server_port}"
        cls.service.member("acme", "ada", "writer")
        cls.know(False_.here, "items", "secret")

    def outcome(self, account=None, **claims):
        """What the page is told when the browser comes back with a token that says that."""
        visitor, place = self.linking(account) if account else (self.visitor(), None)
        place = place or visitor("GET", "/dashboard/provider").headers["location"]
        asked = dict(urllib.parse.parse_qsl(urllib.parse.urlsplit(place).query))
        False_.nonce, False_.claims = asked["nonce"], claims
        return self.came_back(visitor, f"/?state={asked['state']}&code=x").status

    def test_a_token_that_was_not_made_for_this_sign_in_is_refused(self):
        self.assertEqual(self.outcome("ada"), 200)
        self.assertEqual(self.outcome(), 200)
        self.assertEqual(self.outcome(aud=["items", "others"], azp="items"), 200)
        for claims in ({"iss": "https://other.example.org"}, {"aud": "others"}, {"aud": ["items", "others"]}, {"aud": None}, {"nonce": "x"}, {"nonce": None},
                       {"exp": int(time.time()) - 3600}, {"exp": None}, {"sub": None}, {"sub": ""}, {"sub": "x" * 300}, {"sub": 7}):
            self.assertEqual(self.outcome(**claims), 502, claims)
        self.assertEqual(self.outcome(sub="somebody else"), 403)

    def test_a_provider_that_is_away_or_another_one_is_told_of(self):
        for description in ({"issuer": "https://other.example.org"}, {"token_endpoint": "http://example.org/token"}, {"authorization_endpoint": "javascript:x"}):
            self.know(False_.here, "items", "secret")  # Which forgets what it was told.
            False_.description = description
            try:
                self.assertEqual(self.visitor()("GET", "/dashboard/provider").json["code"], "provider", description)
            finally:
                False_.description = {}
        self.know("http://127.0.0.1:1", "items", "secret")
        self.assertEqual(self.visitor()("GET", "/dashboard/provider").status, 502)
        self.assertIn(b'name="password"', self.visitor()("GET", "/dashboard").body)
        self.know(False_.here, "items", "secret")


if __name__ == "__main__":
    service.main()
