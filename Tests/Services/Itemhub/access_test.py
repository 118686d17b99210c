"""Who may what: every route for every role, for another customer and for bad tokens; signing in; signed requests."""

import base64
import concurrent.futures
import hashlib
import hmac
import html.parser
import subprocess
import time
import unittest
import urllib.parse

import service
from service import PASSWORD, ROLES, TUS, ServiceTest

RANK = {"stranger": 0, "reader": 1, "writer": 2, "admin": 3}
# What each route is asked with, so that nothing but who asks is wrong with it.
BODIES = {
    ("POST", "/workspaces"): {"name": "Another"},
    ("PUT", "/workspaces/{workspace}/members/{account}"): {"role": "reader"},
    ("POST", "/workspaces/{workspace}/invitations"): {"label": "Somebody"},
    ("PATCH", "/accounts/{account}"): {"disabled": False},
    ("POST", "/teams"): {"name": "Another"},
    ("PATCH", "/teams/{team}"): {"everywhere": None},
    ("PUT", "/workspaces/{workspace}/teams/{team}"): {"role": "reader"},
    ("POST", "/workspaces/{workspace}/items"): {"caption": "New"},
    ("PATCH", "/items/{item}"): {"caption": "Changed"},
    ("POST", "/items/{item}/links"): {"itemId": 1},
    ("POST", "/items/{item}/comments"): {"body": "Yes"},
    ("POST", "/items/{item}/attachments"): {"name": "b.tdsn", "docType": "VeloraDocType"},
    ("POST", "/attachments/{attachment}/versions"): {"upload": "none", "madeFrom": 1},
    ("POST", "/program/requests"): {"name": "Any", "args": {}},
    ("PUT", "/program/requests/{request}"): {"state": "done"},
    ("POST", "/program/requests/{request}/take"): {},
    ("POST", "/program/tickets"): {"ticket": "none"},
}
HEADERS = {**TUS, "If-Match": "*", "Upload-Length": "1", "Upload-Offset": "0"}


def routes():
    lines = subprocess.check_output([service.PROGRAM, "--list-routes"], text=True).splitlines()
    return [line.split() for line in lines]


class RolesTest(ServiceTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # In one workspace alone, so that what holds everywhere isn't taken for what holds there.
        cls.accounts = {role: cls.service.member("acme", role, role, cls.workspace) for role in ROLES}
        cls.service.member("acme", "pawn", None)
        cls.accounts["stranger"] = cls.service.member("acme", "stranger", None)
        cls.service.admin("customer", "add", "other")
        cls.other = cls.service.member("other", "boss", "admin")

    def path(self, pattern):
        item = self.item("Victim")
        names = {"workspace": self.workspace, "item": item, "linked": 1, "account": "pawn", "token": 1, "version": 1,
                 "upload": "none", "comment": 1, "attachment": 1, "request": 4711}
        if "{comment}" in pattern:
            names["comment"] = self.boss("POST", f"/items/{item}/comments", {"body": "x"}).json["id"]
        if "{invitation}" in pattern:
            names["invitation"] = self.boss("POST", f"/workspaces/{self.workspace}/invitations", {"label": "x"}).json["id"]
        if "{team}" in pattern:
            names["team"] = self.boss("POST", "/teams", {"name": f"With {item}"}).json["id"]
        if "{attachment}" in pattern:
            names["attachment"] = self.attachment(item=item)
        return pattern.format(**names)

    def ask(self, client, method, pattern):
        bytes_follow = {"Content-Type": "application/offset+octet-stream"} if pattern.startswith("/uploads") else {}
        return client(method, self.path(pattern), BODIES.get((method, pattern)), {**HEADERS, **bytes_follow})

    def test_every_route_asks_for_its_role(self):
        # Making workspaces and what is about all people need a role everywhere; other people's uploads, tokens and comments are nobody's at all. What
        # isn't a document has no picture, and this service knows no provider.
        own = {"/tokens/{token}", "/dashboard/provider", "/program/requests/{request}", "/program/requests/{request}/take", "/program/tickets", "/uploads/{upload}", "/items/{item}/picture",
               "/attachments/{attachment}/versions/{version}/picture"}
        everywhere = {("POST", "/workspaces"), ("GET", "/accounts"), ("PATCH", "/accounts/{account}"), ("GET", "/audit")} | {
            (method, pattern) for method, pattern, _ in routes() if pattern.startswith("/teams")}
        for method, pattern, role in routes():
            if role == "anybody":
                continue
            about_workspace = any(name in pattern for name in ("{workspace}", "{item}", "{attachment}", "{comment}"))
            for name, client in self.accounts.items():
                with self.subTest(f"{method} {pattern} by {name}"):
                    answer = self.ask(client, method, pattern)
                    if (method, pattern) in everywhere:
                        self.assertEqual(answer.status, 403)
                    elif RANK[name] >= RANK[role] or not (about_workspace or pattern.startswith("/uploads")):
                        allowed = {404} if pattern in own else {403, 204} if "{comment}" in pattern else {404} \
                            if BODIES.get((method, pattern), {}).get("upload") or "{linked}" in pattern else {200, 201, 204}
                        self.assertIn(answer.status, allowed, answer)
                    else:
                        self.assertEqual(answer.status, 404 if about_workspace and name == "stranger" else 403, answer)

    def test_another_customer_finds_nothing_and_a_bad_token_nobody(self):
        spoiled = self.boss.token[:-1] + ("A" if self.boss.token[-1] != "A" else "B")
        expired = self.service.admin("token", "add", "acme", "boss", "admin", 1)
        self.service.admin("token", "remove", "acme", "boss",
                           self.service.client(expired)("GET", "/session").json["tokenId"])
        for method, pattern, role in routes():
            if role == "anybody":
                continue
            with self.subTest(f"{method} {pattern}"):
                if "{" in pattern:
                    self.assertEqual(self.ask(self.other, method, pattern).status, 404)
                path = self.path(pattern)
                # The customer's name in the query decides nothing; it must be the token's.
                wrong = self.service.client(self.boss.token, "other")
                self.assertEqual(wrong(method, path, headers=HEADERS).status, 403)
                for bad in (None, "x", "x.y", spoiled, expired, self.boss.token.split(".")[0], "." + self.boss.token):
                    answer = self.service.client(bad)(method, path, BODIES.get((method, pattern)), HEADERS)
                    self.assertEqual(answer.status, 401, answer)
                    self.assertIn("Bearer", answer.headers["www-authenticate"])
        for path in ("/workspaces", "/favourites", "/search?q=victim", "/events?limit=500"):
            self.assertEqual(list(self.other("GET", path).json.values())[0], [], path)

    def test_a_scope_narrows_what_a_role_allows(self):
        narrow = {scope: self.service.client(self.service.admin("token", "add", "acme", "boss", scope, 1)) for scope in ROLES}
        item = self.item()
        asked = [("GET", f"/items/{item}", None, "reader"), ("POST", f"/items/{item}/comments", {"body": "x"}, "writer"),
                 ("PUT", f"/favourites/{item}", None, "writer"), ("DELETE", f"/items/{item}", None, "admin")]
        for method, path, body, needed in asked:
            for scope, client in narrow.items():
                status = client(method, path, body).status
                self.assertEqual(status == 403, RANK[scope] < RANK[needed], f"{method} {path} by {scope}: {status}")

    def test_a_comment_is_its_authors_and_roles_end_at_once(self):
        item = self.item()
        comment = self.boss("POST", f"/items/{item}/comments", {"body": "mine"}).json["id"]
        self.assertEqual(self.accounts["writer"]("DELETE", f"/comments/{comment}").json["code"], "not_author")
        self.assertEqual(self.accounts["admin"]("DELETE", f"/comments/{comment}").status, 204)
        guest = self.service.member("acme", "guest", "reader", self.workspace)
        self.assertEqual(guest("GET", f"/items/{item}").status, 200)
        self.boss("DELETE", f"/workspaces/{self.workspace}/members/guest")
        self.assertEqual(guest("GET", f"/items/{item}").status, 404)
        self.assertEqual(guest("GET", "/search?q=item").json["items"], [])
        self.service.admin("account", "disable", "acme", "guest")
        self.assertEqual(guest("GET", "/session").json["code"], "account_disabled")


class PeopleTest(ServiceTest):
    form = {"Content-Type": "application/x-www-form-urlencoded"}

    def invite(self, client, workspace=None, **more):
        return client("POST", f"/workspaces/{workspace or self.workspace}/invitations", {"label": "Somebody", **more}).json

    def join(self, invitation, account, password=PASSWORD, **headers):
        code = urllib.parse.parse_qs(invitation["url"].split("?")[1])["code"][0]
        return self.service.client()("POST", "/dashboard/join", headers={**self.form, **headers},
                                     body=urllib.parse.urlencode({"code": code, "account": account, "password": password}))

    def test_an_invitation_makes_one_account_with_its_role_and_serves_no_more(self):
        invitation = self.invite(self.boss, role="writer")
        for account, password, status in [("", PASSWORD, 400), ("two\nlines", PASSWORD, 400), ("x" * 200, PASSWORD, 400),
                                          ("joined", "short", 400), ("boss", PASSWORD, 409)]:
            refused = self.join(invitation, account, password)
            self.assertEqual((refused.status, refused.headers.get("set-cookie")), (status, None), account)
        self.assertEqual(self.join(invitation, "joined", **{"Sec-Fetch-Site": "cross-site"}).status, 403)
        begun = self.join(invitation, "joined")
        self.assertEqual((begun.status, begun.headers["location"]), (303, "../dashboard"))
        session = self.service.client()
        cookie = begun.headers["set-cookie"].split(";")[0]
        self.assertEqual(session("GET", "/session", headers={"Cookie": cookie}).json["account"], "joined")
        self.assertEqual(session("GET", "/workspaces", headers={"Cookie": cookie}).json["workspaces"][0]["role"], "writer")
        self.assertEqual(self.join(invitation, "again").status, 410)
        left = self.boss("GET", f"/workspaces/{self.workspace}/invitations").json["invitations"]
        self.assertNotIn(invitation["id"], [each["id"] for each in left])
        self.assertNotIn(invitation["url"].split("code=")[1], self.service.stored())

    def test_an_invitation_ends_with_its_time_and_with_who_made_it(self):
        host = self.service.member("acme", "host", "admin", self.workspace)
        late, orphan, demoted = [self.invite(host) for _ in range(3)]
        self.service.sql(f"UPDATE invitation SET expires_at = 1 WHERE id = {late['id']}")
        self.assertEqual(self.join(late, "late").status, 410)
        self.service.admin("member", "set", "acme", "host", self.workspace, "writer")
        self.assertEqual(self.join(demoted, "demoted").status, 410)
        self.service.admin("member", "set", "acme", "host", self.workspace, "admin")
        self.service.admin("account", "disable", "acme", "host")
        self.assertEqual(self.join(orphan, "orphan").status, 410)
        # Of two at once, one joins.
        wanted = self.invite(self.boss)
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            statuses = sorted(answer.status for answer in pool.map(lambda number: self.join(wanted, f"racer {number}"), range(4)))
        self.assertEqual(statuses, [303, 410, 410, 410])

    def test_administrators_of_all_workspaces_manage_accounts_but_not_their_own(self):
        made = self.service.member("acme", "managed", "reader")
        people = {each["account"]: each for each in self.boss("GET", "/accounts?limit=500").json["accounts"]}
        self.assertEqual((people["managed"]["everywhere"], people["managed"]["disabled"]), ("reader", False))
        self.assertEqual(self.boss("PATCH", "/accounts/managed", {"everywhere": "writer"}).status, 204)
        self.assertEqual(self.boss("PATCH", "/accounts/managed", {"disabled": False}).status, 204)
        item = made("POST", f"/workspaces/{self.workspace}/items", {"caption": "Now"})
        self.assertEqual(item.status, 201)
        self.assertEqual(self.boss("PATCH", "/accounts/managed", {"disabled": True, "everywhere": None}).status, 204)
        self.assertEqual(made("GET", "/session").json["code"], "account_disabled")
        self.assertEqual(self.boss("PATCH", "/accounts/boss", {"disabled": True}).json["code"], "own_account")
        for change in ({"disabled": 1}, {"everywhere": "owner"}, {"colour": "red"}):
            self.assertEqual(self.boss("PATCH", "/accounts/managed", change).json["code"], "bad_member", change)

    def test_a_teams_roles_are_its_members_as_long_as_they_are_in_it(self):
        item = self.boss("POST", f"/workspaces/{self.workspace}/items", {"caption": "Teamwork"}).json["id"]
        here = f"/workspaces/{self.workspace}"
        mate, lead = self.service.member("acme", "mate", None), self.service.member("acme", "lead", "admin", self.workspace)
        team = self.boss("POST", "/teams", {"name": "Pumps & Valves"}).json["id"]
        self.assertEqual(self.boss("POST", "/teams", {"name": "Pumps & Valves"}).status, 409)

        def can():
            """What the mate may do: see, find and hear of an item, change it, remove it."""
            seen = {mate("GET", f"/items/{item}").status == 200, mate("GET", "/search?q=teamwork").json["items"] != [],
                    any(event["itemId"] == item for event in mate("GET", "/events?limit=500").json["events"] if "itemId" in event),
                    mate("GET", f"{here}/items?limit=500").status == 200,
                    self.workspace in [each["id"] for each in mate("GET", "/workspaces").json["workspaces"]]}
            self.assertEqual(len(seen), 1, seen)
            writes = mate("POST", f"/items/{item}/comments", {"body": "x"}).status == 201
            self.assertEqual(mate.begin(1).status == 201, writes)
            return (seen.pop(), writes, mate("GET", f"{here}/members").status == 200)

        self.assertEqual(can(), (False, False, False))
        self.assertEqual(self.boss("PUT", f"/teams/{team}/members/mate").status, 204)
        self.assertEqual(self.boss("PUT", f"/teams/{team}/members/mate").status, 204, "again")
        self.assertEqual(can(), (False, False, False))
        # Who administers a workspace gives roles there to teams that he has not made.
        self.assertIn(("Pumps & Valves", None), [(each["name"], each["role"]) for each in lead("GET", f"{here}/teams").json["teams"]])
        for role, expected in (("reader", (True, False, False)), ("writer", (True, True, False)), ("admin", (True, True, True))):
            self.assertEqual(lead("PUT", f"{here}/teams/{team}", {"role": role}).status, 204)
            self.assertEqual(can(), expected)
        told = [each for each in lead("GET", f"{here}/members").json["members"] if each["account"] == "mate"]
        self.assertEqual(told, [{"account": "mate", "role": "admin", "everywhere": False, "team": "Pumps & Valves"}])
        # The highest counts, and a role of one's own stays.
        self.service.admin("member", "set", "acme", "mate", self.workspace, "reader")
        self.assertEqual(can(), (True, True, True))
        self.assertEqual(lead("DELETE", f"{here}/teams/{team}").status, 204)
        self.assertEqual(can(), (True, False, False))
        self.assertEqual(self.boss("PATCH", f"/teams/{team}", {"everywhere": "writer"}).status, 204)
        self.assertEqual(can(), (True, True, False))
        self.assertEqual(self.boss("DELETE", f"/teams/{team}/members/mate").status, 204)
        self.assertEqual(can(), (True, False, False))
        self.boss("PUT", f"/teams/{team}/members/mate")
        self.service.admin("member", "set", "acme", "mate", self.workspace, "none")
        self.assertEqual(can(), (True, True, False))
        self.assertEqual(self.boss("DELETE", f"/teams/{team}").status, 204)
        self.assertEqual(can(), (False, False, False))
        self.assertEqual(self.boss("DELETE", f"/teams/{team}").status, 404)

        # Nobody takes his own roles away by mistake, and the shell does the same as the interface.
        self.service.admin("team", "add", "acme", "Chiefs")
        self.service.admin("team", "join", "acme", "Chiefs", "boss")
        self.service.admin("team", "set", "acme", "Chiefs", "all", "admin")
        chiefs = self.boss("GET", "/teams").json["teams"][0]
        self.assertEqual((chiefs["name"], chiefs["everywhere"], chiefs["members"]), ("Chiefs", "admin", ["boss"]))
        for method, path, body in (("DELETE", "", None), ("PATCH", "", {"everywhere": None}), ("DELETE", "/members/boss", None)):
            self.assertEqual(self.boss(method, f"/teams/{chiefs['id']}{path}", body).json["code"], "own_team")
        self.service.admin("team", "leave", "acme", "Chiefs", "boss")
        self.service.admin("team", "remove", "acme", "Chiefs")
        self.assertEqual(self.boss("GET", "/teams").json["teams"], [])
        for path in (f"/teams/{team}/members/mate", "/teams/x", "/teams/99999999999999999999"):
            self.assertEqual(self.boss("DELETE", path).status, 404, path)

    def test_an_administrator_reads_what_happened_to_his_customer_and_to_no_other(self):
        self.service.admin("customer", "add", "others")
        other = self.service.member("others", "boss", "admin")
        other("POST", "/workspaces", {"name": "Secret"})
        for number in range(5):
            self.boss("POST", "/workspaces", {"name": f"Place {number}"})
        read, after = [], ""
        while after is not None and len(read) < 100:
            part = self.boss("GET", f"/audit?limit=2{after}").json
            read += part["records"]
            after = f"&after={part['next']}" if "next" in part else None
        self.assertEqual([each["subject"] for each in read[:5]], [f"Place {number}" for number in (4, 3, 2, 1, 0)])
        self.assertEqual(sorted({each["id"] for each in read}, reverse=True), [each["id"] for each in read])
        self.assertNotIn("Secret", str(read))
        self.assertEqual(read[0]["address"], "127.0.0.1")
        self.assertEqual([each["subject"] for each in other("GET", "/audit").json["records"]], ["Secret"])


class SignInTest(ServiceTest):
    def test_wrong_passwords_have_to_wait_and_say_nothing_about_names(self):
        client = self.service.client()
        self.service.member("acme", "second", "reader")

        def sign_in(account, password, customer="acme"):
            return client("POST", f"/tokens?customer={customer}", {"account": account, "password": password, "scope": "reader"})

        granted = sign_in("boss", PASSWORD)
        self.assertEqual(self.service.client(granted.json["token"])("GET", "/session").json["scope"], "reader")
        refused = [sign_in("boss", "wrong"), sign_in("nobody", PASSWORD), sign_in("boss", PASSWORD, "other"),
                   sign_in("boss", "")]
        self.assertEqual({(each.status, each.body) for each in refused}, {(401, refused[0].body)})
        self.assertEqual(sign_in("boss", "wrong").status, 401)
        waits = sign_in("second", PASSWORD)
        self.assertEqual(waits.status, 429)
        self.assertGreaterEqual(int(waits.headers["retry-after"]), 1)

    def test_nothing_secret_stands_in_database_log_or_list_of_tokens(self):
        token = self.service.client()("POST", "/tokens?customer=acme", {"account": "boss", "password": PASSWORD}).json["token"]
        stored = self.service.stored()
        listed = self.boss("GET", "/tokens").body.decode()
        for secret in (token.split(".")[1], PASSWORD, self.boss.token.split(".")[1]):
            self.assertNotIn(secret, stored + listed + self.service.log())
        self.assertIn("$argon2id$", stored)
        self.assertEqual((self.service.data / "service.key").stat().st_mode & 0o777, 0o600)


class Form(html.parser.HTMLParser):
    """What a browser knows of a page: the fields of its form, and what is shown as text."""

    def __init__(self, page):
        super().__init__()
        self.fields, self.tags, self.text = {}, [], ""
        self.feed(page)

    def handle_starttag(self, tag, attributes):
        self.tags.append(tag)
        if tag == "input":
            self.fields[dict(attributes)["name"]] = dict(attributes).get("value", "")

    def handle_data(self, data):
        self.text += data


class BrowserTest(ServiceTest):
    """Signing in with a browser, for a program on the same machine."""

    redirect = "http://127.0.0.1:4711/signed-in"
    verifier = "v" * 43

    def page(self, **changed):
        wish = {"response_type": "code", "client_id": "program", "redirect_uri": self.redirect, "state": "s&t", "customer": "acme",
                "code_challenge": service.pkce(self.verifier), "code_challenge_method": "S256", **changed}
        return self.service.client()("GET", "/oauth/authorize?" + urllib.parse.urlencode(wish))

    def post(self, path, fields, headers=()):
        return self.service.client()("POST", path, body=urllib.parse.urlencode(fields), headers={
            "Content-Type": "application/x-www-form-urlencoded", **dict(headers)})

    def typed(self, **fields):
        return {**Form(self.page().body.decode()).fields, "account": "boss", "password": PASSWORD, **fields}

    def change(self, code, **changed):
        return self.post("/oauth/token", {"grant_type": "authorization_code", "code": code, "client_id": "program",
                                          "redirect_uri": self.redirect, "code_verifier": self.verifier, **changed})

    def code(self):
        answer = self.post("/oauth/authorize", self.typed())
        self.assertEqual(answer.status, 303, answer)
        target, _, query = answer.headers["location"].partition("?")
        fields = dict(urllib.parse.parse_qsl(query))
        self.assertEqual((target, fields["state"]), (self.redirect, "s&t"))
        self.assertEqual(fields["iss"], f"http://127.0.0.1:{self.service.port}")
        return fields["code"]

    def test_a_password_typed_in_the_browser_gets_the_program_a_token_once(self):
        code = self.code()
        answer = self.change(code)
        self.assertEqual(answer.status, 200, answer)
        session = self.service.client(answer.json["access_token"])("GET", "/session").json
        self.assertEqual((session["account"], session["scope"]), ("boss", "writer"))
        self.assertEqual(self.change(code).json, {"error": "invalid_grant"})
        for secret in (code, self.code(), answer.json["access_token"].split(".")[1]):
            self.assertNotIn(secret, self.service.stored() + self.service.log())

    def test_a_code_is_good_for_nobody_else_and_not_for_long(self):
        for changed in ({"code_verifier": "w" * 43}, {"code_verifier": ""}, {"client_id": "other"}, {"redirect_uri": self.redirect + "/"}):
            code = self.code()
            self.assertEqual(self.change(code, **changed).json, {"error": "invalid_grant"}, changed)
            self.assertEqual(self.change(code).status, 400, "a code that was tried is used up")
        self.assertEqual(self.change("x").json, {"error": "invalid_grant"})
        self.assertEqual(self.change(self.code(), grant_type="password").json, {"error": "unsupported_grant_type"})
        code = self.code()
        self.service.sql("UPDATE sign_in_code SET expires_at = 1")
        self.assertEqual(self.change(code).json, {"error": "invalid_grant"})

    def test_the_browser_is_sent_to_this_machine_only(self):
        for redirect in ("https://127.0.0.1/", "http://localhost:1/", "http://[::1]/", "http://127.0.0.1.example.org/", "http://example.org/",
                         "http://127.0.0.1@example.org/", "http://me@127.0.0.1/", "javascript:alert(1)", "//127.0.0.1/", "", "http://127.0.0.1/#x"):
            for answer in (self.page(redirect_uri=redirect), self.post("/oauth/authorize", self.typed(redirect_uri=redirect))):
                self.assertEqual((answer.status, answer.headers.get("location")), (400, None), redirect)
        for changed in ({"response_type": "token"}, {"code_challenge_method": "plain"}, {"code_challenge": ""}, {"client_id": ""},
                        {"state": "x" * 256}):
            self.assertEqual(self.page(**changed).status, 400, changed)
        self.assertEqual(self.post("/oauth/authorize", self.typed(), {"Sec-Fetch-Site": "cross-site"}).status, 403)

    def test_the_page_needs_no_script_loads_nothing_and_shows_markup_as_text(self):
        hostile = "\"><script>alert(1)</script>%1"
        answer = self.page(customer=hostile, state=hostile, client_id=hostile)
        form = Form(answer.body.decode())
        self.assertEqual((form.fields["customer"], form.fields["state"]), (hostile, hostile))
        self.assertFalse({"script", "img", "link", "iframe"} & set(form.tags))
        policy = answer.headers["content-security-policy"]
        style = answer.body.split(b"<style>")[1].split(b"</style>")[0]
        self.assertIn("'sha256-" + base64.b64encode(hashlib.sha256(style).digest()).decode() + "'", policy)
        # One policy alone: a second one would narrow it.
        for part in ("default-src 'none'", "form-action 'self' http://127.0.0.1:4711;", "frame-ancestors 'none'"):
            self.assertEqual(policy.count(part), 1, policy)
        refused = self.post("/oauth/authorize", self.typed(account=hostile), {"Accept-Language": "de-AT,en"})
        self.assertEqual((refused.status, Form(refused.body.decode()).fields["account"]), (401, hostile))
        self.assertIn("nicht richtig", Form(refused.body.decode()).text)
        self.assertNotIn(PASSWORD.encode(), refused.body)

    def tearDown(self):
        # Of the tests, all come from one address.
        self.service.sql("DELETE FROM throttle")

    def test_wrong_passwords_have_to_wait_here_as_well(self):
        self.service.member("acme", "slow", "reader")
        statuses = [self.post("/oauth/authorize", self.typed(account="slow", password="wrong")).status for _ in range(6)]
        self.assertEqual((statuses[0], statuses[-1]), (401, 429))
        again = self.post("/oauth/authorize", self.typed(account="slow"))
        self.assertEqual(again.status, 429)
        self.assertGreaterEqual(int(again.headers["retry-after"]), 1)

def quoted(text):
    return urllib.parse.quote(text, safe="-._~")


class SignedTest(ServiceTest):
    """Requests signed by OAuth 1.0, as this test computes the signature from the standard."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        consumer = cls.pairs(cls.service.admin("consumer", "add", "acme", "Program"))
        signed = cls.service.admin("token", "add-signed", "acme", "boss", consumer["consumerKey"], "writer", 1)
        cls.keys = {**consumer, **cls.pairs(signed)}
        cls.nonces = 0

    @staticmethod
    def pairs(text):
        return dict(line.split(" ") for line in text.splitlines())

    def signed(self, method, path, query=(), algorithm="HMAC-SHA256", keys=None, body=None, **changed):
        keys = {**self.keys, **(keys or {})}
        type(self).nonces += 1
        parameters = {"oauth_consumer_key": keys["consumerKey"], "oauth_token": keys["token"], "oauth_version": "1.0",
                      "oauth_signature_method": algorithm, "oauth_timestamp": str(int(time.time())),
                      "oauth_nonce": f"n{self.nonces}", **changed}
        address = f"http://127.0.0.1:{self.service.port}{path}"
        pairs = sorted((quoted(name), quoted(value)) for name, value in [*parameters.items(), *query])
        text = "&".join([method, quoted(address), quoted("&".join(f"{name}={value}" for name, value in pairs))])
        key = f"{quoted(keys['consumerSecret'])}&{quoted(keys['tokenSecret'])}".encode()
        function = hashlib.sha1 if algorithm == "HMAC-SHA1" else hashlib.sha256
        parameters["oauth_signature"] = base64.b64encode(hmac.new(key, text.encode(), function).digest()).decode()
        header = "OAuth " + ", ".join(f'{name}="{quoted(value)}"' for name, value in parameters.items())
        if query:
            path += "?" + urllib.parse.urlencode(query)
        return self.service.client()(method, path, body, {"Authorization": header})

    def test_a_signed_request_is_its_accounts_and_counts_once(self):
        for algorithm in ("HMAC-SHA1", "HMAC-SHA256"):
            answer = self.signed("GET", "/search", [("q", "häßlich & *"), ("customer", "acme")], algorithm)
            self.assertEqual(answer.status, 200, answer)
        self.assertEqual(self.signed("POST", f"/workspaces/{self.workspace}/items", body={"caption": "Signed"}).status, 201)
        self.assertEqual(self.signed("GET", "/session", oauth_nonce="twice").status, 200)
        self.assertEqual(self.signed("GET", "/session", oauth_nonce="twice").json["code"], "repeated")

    def test_what_is_wrong_with_a_signature_is_refused(self):
        for code, changes in [("signature", {"keys": {"tokenSecret": "x"}}), ("signature", {"keys": {"consumerSecret": "x"}}),
                              ("signature", {"keys": {"token": "x"}}), ("signature", {"keys": {"consumerKey": "x"}}),
                              ("signature", {"algorithm": "PLAINTEXT"}), ("repeated", {"oauth_nonce": ""}),
                              ("clock", {"oauth_timestamp": str(int(time.time()) - 400)}),
                              ("clock", {"oauth_timestamp": str(int(time.time()) + 400)}), ("clock", {"oauth_timestamp": ""})]:
            answer = self.signed("GET", "/session", **changes)
            self.assertEqual((answer.status, answer.json["code"]), (401, code), changes)
        # Its token alone is no bearer token.
        self.assertEqual(self.service.client(self.keys["token"] + "." + self.keys["tokenSecret"])("GET", "/session").status, 401)

    def test_a_session_handle_gets_another_token_once(self):
        keys = self.pairs(self.service.admin("token", "add-signed", "acme", "boss", self.keys["consumerKey"], "writer", 1))
        renew = lambda handle, keys: self.signed("POST", "/oauth/access_token", keys=keys, oauth_session_handle=handle)
        self.assertEqual(renew("wrong", keys).json["code"], "session")
        answer = renew(keys["sessionHandle"], keys)
        self.assertEqual(answer.status, 200, answer)
        fields = dict(urllib.parse.parse_qsl(answer.body.decode()))
        fresh = {"token": fields["oauth_token"], "tokenSecret": fields["oauth_token_secret"]}
        self.assertEqual(self.signed("GET", "/session", keys=fresh).status, 200)
        self.assertEqual(self.signed("GET", "/session", keys=keys).status, 401)
        self.assertEqual(renew(keys["sessionHandle"], keys).status, 401)


class LimitsTest(ServiceTest):
    settings = {"limits": {"requestsPerSecond": 5}, "server": {"port": 0, "behindProxy": True}}

    def test_a_client_that_asks_too_often_waits_and_others_do_not(self):
        ask = lambda address: self.boss("GET", "/session", headers={"X-Forwarded-For": f"1.2.3.4, {address}"}).status
        statuses = [ask("10.0.0.1") for _ in range(60)]
        self.assertEqual(statuses[0], 200)
        self.assertIn(429, statuses)
        self.assertEqual(ask("10.0.0.2"), 200)


if __name__ == "__main__":
    service.main()
