"""The dashboard as browsers meet it below its scripts: sessions and their end, what other pages may not do, and pictures."""

import http.cookies
import json
import re
import unittest
import urllib.parse
import zipfile

import service
from service import PASSWORD, PNG, ServiceTest, package

FORM = {"Content-Type": "application/x-www-form-urlencoded"}


class Browser:
    """One browser's cookies, and what its page is told."""

    def __init__(self, port, **headers):
        self.client, self.cookie, self.headers = service.Client(port), None, headers

    def __call__(self, method, path, body=None, **headers):
        sent = {**self.headers, **{name.replace("_", "-"): value for name, value in headers.items()}}
        if self.cookie:
            sent["Cookie"] = f"theme=dark; {self.cookie}; other=1"
        answer = self.client(method, path, body, sent) if isinstance(body, dict) else self.client(method, path, None, sent, body)
        if given := answer.headers.get("set-cookie"):
            self.set = http.cookies.SimpleCookie(given)
            name, morsel = next(iter(self.set.items()))
            self.cookie = f"{name}={morsel.value}" if morsel.value else None
        return answer

    def sign_in(self, account="boss", password=PASSWORD, **headers):
        typed = urllib.parse.urlencode({"customer": "acme", "account": account, "password": password})
        return self("POST", "/dashboard", typed, **FORM, **headers)

    @property
    def proof(self):
        return self.told()["proof"]

    def told(self, name="session"):
        page = self("GET", "/dashboard").body.decode()
        return json.loads(re.search(rf'id="{name}">(.*?)</script>', page).group(1))


class PageTest(ServiceTest):
    def browser(self, **headers):
        return Browser(self.service.port, **headers)

    def tearDown(self):
        self.service.sql("DELETE FROM throttle")

    def browser_of(self, name):
        self.service.member("acme", name, "reader")
        browser = self.browser()
        browser.sign_in(name)
        return browser


class DashboardTest(PageTest):
    def test_a_password_begins_a_session_that_ends_when_it_is_told_to(self):
        browser = self.browser()
        self.assertIn(b'name="password"', browser("GET", "/dashboard").body)
        refused = browser.sign_in(password="wrong")
        self.assertEqual((refused.status, browser.cookie), (401, None))
        self.assertEqual(browser.sign_in().status, 303)
        cookie = browser.set["itemhub"]
        self.assertTrue(cookie["httponly"])
        self.assertEqual((cookie["samesite"], cookie["path"], cookie["domain"], cookie["max-age"]), ("Strict", "/", "", ""))
        self.assertEqual(browser.told()["account"], "boss")
        self.assertEqual(browser("GET", "/session").json["account"], "boss")
        # Only what the page was told changes anything.
        path, body = f"/workspaces/{self.workspace}/items", {"caption": "From the page"}
        for proof in (None, "", "x", self.browser_of("other").proof):
            more = {} if proof is None else {"X_CSRF_Token": proof}
            self.assertEqual(browser("POST", path, body, **more).json["code"], "not_the_page")
        self.assertEqual(browser("POST", path, body, X_CSRF_Token=browser.proof).status, 201)

        kept = browser.cookie
        self.assertEqual(browser("POST", "/dashboard/end", X_CSRF_Token=browser.proof).status, 204)
        self.assertIsNone(browser.cookie)
        browser.cookie = kept
        self.assertEqual(browser("GET", "/session").status, 401)
        self.assertIn(b'name="password"', browser("GET", "/dashboard").body)

    def test_sessions_end_by_themselves_and_with_their_account(self):
        browser = self.browser_of("passing")
        self.service.sql("UPDATE token SET expires_at = 1 WHERE label = 'Browser'")
        self.assertEqual(browser("GET", "/session").status, 401)
        browser.sign_in("passing")
        self.assertEqual(browser("GET", "/session").status, 200)
        self.service.admin("account", "disable", "acme", "passing")
        self.assertEqual(browser("GET", "/session").status, 401)

    def test_other_pages_get_nothing_and_change_nothing(self):
        browser = self.browser()
        browser.sign_in()
        proof = browser.proof
        for site in ("cross-site", "same-site"):
            for path in ("/session", "/workspaces", "/dashboard", "/events?after=now"):
                self.assertEqual(browser("GET", path, Sec_Fetch_Site=site).json["code"], "other_site", path)
            answer = browser("PUT", f"/favourites/{self.item()}", Sec_Fetch_Site=site, X_CSRF_Token=proof)
            self.assertEqual(answer.json["code"], "other_site")
            self.assertEqual(self.browser().sign_in(Sec_Fetch_Site=site).status, 403)
        self.assertEqual(browser("GET", "/dashboard", Sec_Fetch_Site="none").status, 200)
        headers = browser("GET", "/dashboard").headers
        policy = dict(part.strip().split(" ", 1) for part in headers["content-security-policy"].split(";"))
        self.assertEqual({value for name, value in policy.items() if name.endswith("-src")}, {"'none'", "'self'"})
        self.assertEqual((policy["frame-ancestors"], policy["base-uri"], policy["form-action"]), ("'none'", "'none'", "'self'"))
        for name, value in {"x-content-type-options": "nosniff", "x-frame-options": "DENY", "cache-control": "no-store",
                            "referrer-policy": "no-referrer", "cross-origin-resource-policy": "same-origin"}.items():
            self.assertEqual(headers[name], value)
        self.assertNotIn("access-control-allow-origin", headers)

    def test_a_link_signs_in_once_soon_and_with_no_more_than_its_token(self):
        link = lambda client: urllib.parse.urlparse(client("POST", "/dashboard/links").json["url"])
        place = link(self.boss)
        target = f"{place.path}?{place.query}"
        browser = self.browser()
        self.assertEqual(browser("GET", target).headers["location"], "../dashboard")
        self.assertEqual(browser("GET", "/session").json["scope"], "writer")
        for late in (target, target[:-1], "/dashboard/enter", "/dashboard/enter?code=" + "x" * 2000):
            again = self.browser()
            self.assertEqual((again("GET", late).status, again.cookie), (410, None), late[:60])
        place = link(self.boss)
        self.service.sql("UPDATE page_link SET expires_at = 1")
        self.assertEqual(self.browser()("GET", f"{place.path}?{place.query}").status, 410)
        gone = self.service.member("acme", "gone", "writer")
        place = link(gone)
        self.service.admin("account", "disable", "acme", "gone")
        self.assertEqual(self.browser()("GET", f"{place.path}?{place.query}").status, 410)
        reader = self.service.client(self.service.admin("token", "add", "acme", "boss", "reader", 1))
        self.assertEqual(reader("POST", "/dashboard/links").status, 403)

    def test_behind_a_proxy_with_tls_the_cookie_goes_by_tls_alone(self):
        safe = service.Service(server={"port": 0, "url": "https://items.example.org"})
        self.addCleanup(safe.close)
        safe.admin("customer", "add", "acme")
        safe.start()
        safe.member("acme", "boss", "admin")
        browser = Browser(safe.port)
        browser.sign_in()
        cookie = browser.set["__Host-itemhub"]
        self.assertTrue(cookie["secure"] and cookie["httponly"])
        self.assertEqual(browser("GET", "/session").json["account"], "boss")

    def test_the_page_speaks_the_readers_language_and_shows_names_as_they_are(self):
        hostile = "</script><script>alert(1)</script>"
        self.service.member("acme", hostile, "reader")
        browser = self.browser(**{"Accept-Language": "de-AT,en"})
        self.assertIn("Anmelden", browser("GET", "/dashboard").body.decode())
        browser.sign_in(hostile)
        self.assertEqual(browser.told()["account"], hostile)
        self.assertEqual(browser.told("texts")["PageWorkspaces"], "Arbeitsbereiche")
        english = self.browser()
        english.sign_in()
        self.assertEqual(english.told("texts")["PageWorkspaces"], "Workspaces")
        page = english("GET", "/dashboard").body.decode()
        for file in re.findall(r'dashboard/files/[\w.]+', page):
            loaded = english("GET", "/" + file)
            self.assertEqual(loaded.status, 200, file)
            self.assertEqual(english("GET", "/" + file, If_None_Match=loaded.headers["etag"]).status, 304)
        for other in ("texts.json", "page.html", "none.js", "..%2Ftexts%2Fde.qm", ".."):
            self.assertEqual(english("GET", f"/dashboard/files/{other}").status, 404, other)

    def test_a_version_shows_the_picture_in_its_package_and_nothing_else(self):
        item = self.item()
        path = lambda number: f"/attachments/{number}/versions/1/picture"
        for content in (package(PNG), package(PNG, compressed=zipfile.ZIP_DEFLATED)):
            drawn = self.attachment(content, item)
            answer = self.boss("GET", path(drawn))
            self.assertEqual((answer.body, answer.headers["content-type"]), (PNG, "image/png"))
            self.assertEqual(self.boss("GET", path(drawn), headers={"If-None-Match": answer.headers["etag"]}).status, 304)
        self.assertEqual(self.boss("GET", f"/items/{item}/picture").body, PNG)
        damaged = bytearray(package(PNG))
        damaged[damaged.index(PNG) + 30] ^= 1
        endless = package(PNG, "x" * 60000) + package(PNG)[:-30]
        bomb = package(PNG + b"\0" * (6 << 20), compressed=zipfile.ZIP_DEFLATED)
        for content in (b"", b"PK\3\4", b"text", package(b"<svg/>"), package(PNG, "other.png"), bytes(damaged), endless, bomb,
                        package(PNG)[:-10]):
            self.assertEqual(self.boss("GET", path(self.attachment(content))).json["code"], "no_picture", content[:20])
        many = self.crowd()
        self.assertEqual(self.boss("GET", path(self.attachment(many))).json["code"], "no_picture")

    @staticmethod
    def crowd():
        """A package whose list of entries is longer than anybody reads."""
        made = service.io.BytesIO()
        with zipfile.ZipFile(made, "w") as archive:
            for i in range(600):
                archive.writestr("x" * 40000 + str(i), b"")
            archive.writestr("thumbnail.png", PNG)
        return made.getvalue()


class ProgramTest(PageTest):
    """What the page asks of the program, as the service hands it on."""

    def ask(self, browser, name="ItemhubOpenAttachmentCommand", args=None):
        return browser("POST", "/program/requests", {"name": name, "args": args or {}}, X_CSRF_Token=browser.proof)

    def take(self, client, asked):
        return client("POST", f"/program/requests/{asked['id']}/take", {})

    def redeem(self, client, asked):
        return client("POST", "/program/tickets", {"ticket": asked["ticket"].removeprefix("quillet:ticket/")})

    def pair(self, name):
        """The page and the program of one account, which has no role that holds everywhere."""
        program = self.service.member("acme", name, "writer", self.workspace)
        browser = self.browser()
        browser.sign_in(name)
        return browser, program

    def test_one_program_of_the_account_takes_it_once_and_the_page_learns_what_came_of_it(self):
        browser, program = self.pair("solo")
        after = program("GET", "/events?after=now").json["next"]
        asked = self.ask(browser, args={"fileUri": "https://x/1", "ItemhubItemId": 7}).json
        heard = [event for event in program("GET", f"/events?after={after}&wait=20").json["events"]]
        self.assertEqual([(event["kind"], event["requestId"]) for event in heard], [("program.asked", asked["id"])])
        state = lambda: browser("GET", f"/program/requests/{asked['id']}").json["state"]
        self.assertEqual(state(), "waiting")
        for other in (self.boss, self.service.member("acme", "nosy", "admin")):
            self.assertEqual({self.take(other, asked).status, self.redeem(other, asked).status}, {404})
            self.assertEqual(other("GET", f"/program/requests/{asked['id']}").status, 404)
            self.assertNotIn("program.asked", {each["kind"] for each in other("GET", f"/events?after={after}").json["events"]})
        self.assertEqual(program("PUT", f"/program/requests/{asked['id']}", {"state": "done"}).status, 404)
        self.assertEqual(self.take(program, asked).json,
                         {"id": asked["id"], "name": "ItemhubOpenAttachmentCommand", "args": {"fileUri": "https://x/1", "ItemhubItemId": 7}})
        self.assertEqual(state(), "taken")
        self.assertEqual({self.take(program, asked).status, self.redeem(program, asked).status}, {404})
        self.assertEqual(program("PUT", f"/program/requests/{asked['id']}", {"state": "refused"}).status, 204)
        self.assertEqual((state(), program("PUT", f"/program/requests/{asked['id']}", {"state": "done"}).status), ("refused", 404))

    def test_a_ticket_serves_its_account_once_and_for_a_minute(self):
        browser, program = self.pair("starter")
        asked = self.ask(browser).json
        self.assertEqual(self.redeem(program, asked).json["id"], asked["id"])
        self.assertEqual({self.redeem(program, asked).status, self.take(program, asked).status}, {404})
        for ticket in ("", "x" * 1000, asked["ticket"], asked["ticket"][:-1]):
            self.assertEqual(program("POST", "/program/tickets", {"ticket": ticket}).status, 404)
        late = self.ask(browser).json
        kept = self.service.sql("SELECT ticket_hash FROM program_request")
        self.service.sql("UPDATE program_request SET expires_at = expires_at - 60001")
        self.assertNotIn(late["ticket"].split("/")[1], str(kept))
        self.assertEqual({self.redeem(program, late).status, self.take(program, late).status}, {404})

    def test_a_token_for_the_program_is_made_when_it_is_taken_and_never_kept(self):
        browser, program = self.pair("renewed")
        name = "ItemhubAuthenticateWithTokenCommand"
        self.assertEqual(self.ask(browser, name, {"OAuthToken": "x"}).json["code"], "bad_member")
        taken = self.take(program, self.ask(browser, name).json).json["args"]
        self.assertEqual(set(taken), {"ItemhubTenantUri", "ItemhubTenant", "OAuthToken"})
        self.assertEqual(self.service.client(taken["OAuthToken"])("GET", "/session").json["account"], "renewed")
        self.assertNotIn(taken["OAuthToken"].split(".")[1], self.service.stored())

    def test_what_no_page_asks_for_is_refused_and_none_asks_without_end(self):
        browser, _ = self.pair("greedy")
        for name, args in [("", {}), ("Two words", {}), ("x" * 65, {}), ("A", []), ("A", {"b c": "x"}), ("A", {"b": {}}), ("A", {"b": None}),
                           ("A", {"b": "x" * 20001}), ("A", {chr(97 + i): 1 for i in range(17)})]:
            answer = browser("POST", "/program/requests", {"name": name, "args": args}, X_CSRF_Token=browser.proof)
            self.assertEqual(answer.status, 400, (name, str(args)[:40]))
        statuses = [self.ask(browser).status for _ in range(12)]
        self.assertEqual(statuses, [201] * 10 + [429] * 2)


if __name__ == "__main__":
    service.main()
