"""The description of the interface is what the program does: the same routes, and requests and answers that fit its schemas."""

import re
import subprocess
import unittest
import urllib.parse

import jsonschema
import yaml

import service
from service import TUS, ServiceTest

METHODS = {"get", "post", "put", "patch", "delete", "head"}


class Description:
    def __init__(self, text):
        self.document = yaml.safe_load(text)
        self.paths = [(re.compile("^" + re.sub(r"\\{\w+\\}", "[^/]+?", re.escape(path)) + "$"), path)
                      for path in self.document["paths"]]

    def resolved(self, value):
        while isinstance(value, dict) and "$ref" in value:
            target = self.document
            for part in value["$ref"].removeprefix("#/").split("/"):
                target = target[part]
            value = target
        return value

    def operation(self, method, path):
        # The longest pattern is the most particular.
        for pattern, name in sorted(self.paths, key=lambda entry: -len(entry[1])):
            if pattern.match(path) and method.lower() in self.document["paths"][name]:
                return f"{method} {name}", self.document["paths"][name][method.lower()]
        raise AssertionError(f"not described: {method} {path}")

    def validate(self, value, schema):
        resolver = jsonschema.RefResolver("", self.document)
        jsonschema.Draft202012Validator(schema, resolver=resolver).validate(value)


class Checked:
    """A client all of whose requests and answers must fit the description."""

    def __init__(self, client, description):
        self.client, self.description, self.seen = client, description, set()

    def __getattr__(self, name):
        return getattr(self.client, name)

    def __call__(self, method, path, json_body=None, headers=None, body=None):
        answer = self.client(method, path, json_body, headers, body)
        name, operation = self.description.operation(method, path.split("?")[0])
        response = self.description.resolved(operation["responses"].get(str(answer.status))
                                             or operation["responses"]["default"])
        if answer.status < 400:
            self.seen.add(name)
            if json_body is not None:
                wanted = self.description.resolved(operation["requestBody"])["content"]["application/json"]["schema"]
                self.description.validate(json_body, wanted)
        if answer.body:
            kind = answer.headers["content-type"]
            assert kind in response["content"], f"{name} {answer.status}: {kind}"
            if "json" in kind:
                self.description.validate(answer.json, response["content"][kind]["schema"])
        elif method != "HEAD":
            assert "content" not in response or answer.status in (200, 206), f"{name} {answer.status}: empty"
        return answer


class InterfaceTest(ServiceTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.description = Description(cls.boss("GET", "/openapi.yaml").body)

    def test_program_and_description_have_the_same_routes(self):
        listed = subprocess.check_output([service.PROGRAM, "--list-routes"], text=True).splitlines()
        described = {(method.upper(), path) for path, methods in self.description.document["paths"].items()
                     for method in methods if method in METHODS}
        self.assertEqual({tuple(line.split()[:2]) for line in listed}, described)
        public = {(method.upper(), path) for path, methods in self.description.document["paths"].items()
                  for method in methods if method in METHODS and methods[method].get("security") is not None}
        self.assertEqual({tuple(line.split()[:2]) for line in listed if line.endswith(" anybody")}, public)

    def test_every_route_takes_and_answers_what_is_described(self):
        call = Checked(self.boss, self.description)
        for path in ("/", "/health", "/openapi.yaml", "/session", "/tokens", "/workspaces"):
            self.assertEqual(call("GET", path).status, 200)
        granted = call("POST", "/tokens?customer=acme", {
            "account": "boss", "password": service.PASSWORD, "scope": "reader", "label": "test", "hours": 1})
        self.assertEqual(granted.status, 201)
        self.assertEqual(call("DELETE", f"/tokens/{granted.json['id']}").status, 204)
        form = {"Content-Type": "application/x-www-form-urlencoded"}
        self.assertEqual(call("GET", "/.well-known/oauth-authorization-server").status, 200)
        wish = {"response_type": "code", "client_id": "test", "redirect_uri": "http://127.0.0.1:1/", "code_challenge_method": "S256",
                "code_challenge": service.pkce("verifier")}
        self.assertEqual(call("GET", "/oauth/authorize?" + urllib.parse.urlencode(wish)).status, 200)
        typed = urllib.parse.urlencode({**wish, "customer": "acme", "account": "boss", "password": service.PASSWORD})
        self.assertEqual(call("POST", "/oauth/authorize", body=typed.replace("S256", "plain"), headers=form).status, 400)
        back = call("POST", "/oauth/authorize", body=typed, headers=form).headers["location"]
        change = {"grant_type": "authorization_code", "code": urllib.parse.parse_qs(back.split("?")[1])["code"][0], "client_id": "test",
                  "redirect_uri": "http://127.0.0.1:1/", "code_verifier": "verifier"}
        for status in (200, 400):
            self.assertEqual(call("POST", "/oauth/token", body=urllib.parse.urlencode(change), headers=form).status, status)
        self.assertEqual(call("GET", "/dashboard").status, 200)
        self.assertEqual(call("GET", "/dashboard/files/page.js").status, 200)
        typed = urllib.parse.urlencode({"customer": "acme", "account": "boss", "password": service.PASSWORD})
        self.assertEqual(call("POST", "/dashboard", body=typed, headers=form).status, 303)
        link = call("POST", "/dashboard/links").json["url"].split("/dashboard/")[1]
        for status in (303, 410):
            self.assertEqual(call("GET", "/dashboard/" + link).status, status)
        self.assertEqual(call("POST", "/dashboard/end").status, 204)
        workspace = call("POST", "/workspaces", {"name": "Described"}).json["id"]
        self.service.admin("account", "add", "acme", "guest", password=service.PASSWORD)
        members = f"/workspaces/{workspace}/members"
        for method, path, body in [("PUT", members + "/guest", {"role": "writer"}), ("GET", members, None),
                                   ("DELETE", members + "/guest", None), ("GET", f"/workspaces/{workspace}", None)]:
            self.assertLess(call(method, path, body).status, 300)

        team = call("POST", "/teams", {"name": "Described"}).json["id"]
        for method, path, body in [("PUT", f"/teams/{team}/members/guest", None), ("PATCH", f"/teams/{team}", {"everywhere": "reader"}),
                                   ("PUT", f"/workspaces/{workspace}/teams/{team}", {"role": "admin"}), ("GET", f"/workspaces/{workspace}/teams", None),
                                   ("GET", members, None), ("GET", "/teams", None), ("DELETE", f"/workspaces/{workspace}/teams/{team}", None),
                                   ("DELETE", f"/teams/{team}/members/guest", None), ("DELETE", f"/teams/{team}", None)]:
            self.assertLess(call(method, path, body).status, 300)

        invitations = f"/workspaces/{workspace}/invitations"
        taken_back = call("POST", invitations, {"label": "Somebody", "role": "writer", "days": 1}).json
        self.assertEqual(call("GET", invitations).json["invitations"][0]["id"], taken_back["id"])
        self.assertEqual(call("DELETE", f"{invitations}/{taken_back['id']}").status, 204)
        self.assertEqual(call("GET", "/dashboard/join?" + taken_back["url"].split("?")[1]).status, 410)
        code = call("POST", invitations, {"label": "Somebody"}).json["url"].split("?")[1]
        self.assertEqual(call("GET", "/dashboard/join?" + code).status, 200)
        for account, password, status in (("guest", "long enough", 409), ("new", "short", 400), ("new", "long enough", 303), ("newer", "long enough", 410)):
            typed = code + "&" + urllib.parse.urlencode({"account": account, "password": password})
            self.assertEqual(call("POST", "/dashboard/join", body=typed, headers=form).status, status)
        self.assertIn("new", [each["account"] for each in call("GET", "/accounts").json["accounts"]])
        self.assertEqual(call("PATCH", "/accounts/new", {"disabled": True, "everywhere": None}).status, 204)
        self.assertEqual(call("GET", "/audit?limit=1").json["records"][0]["action"], "member set")

        first = call("POST", f"/workspaces/{workspace}/items", {"caption": "First"}).json["id"]
        item = call("POST", f"/workspaces/{workspace}/items",
                    {"caption": "Second", "description": "of two", "linkedItemId": first}).json["id"]
        self.assertLess(call("GET", f"/workspaces/{workspace}/items?limit=1").json["next"], item)
        etag = call("GET", f"/items/{item}").headers["etag"]
        self.assertEqual(call("GET", f"/items/{item}", headers={"If-None-Match": etag}).status, 304)
        self.assertEqual(call("PATCH", f"/items/{item}", {"description": "changed"}, {"If-Match": etag}).status, 200)
        self.assertEqual(call("PATCH", f"/items/{item}", {"description": "again"}, {"If-Match": etag}).status, 412)
        self.assertEqual([entry["id"] for entry in call("GET", f"/items/{item}/links").json["items"]], [first])
        self.assertEqual(call("DELETE", f"/items/{item}/links/{first}").status, 204)
        self.assertEqual(call("POST", f"/items/{item}/links", {"itemId": first}).status, 204)
        comment = call("POST", f"/items/{item}/comments", {"body": "Good.\nBut late."}).json["id"]
        self.assertEqual(call("GET", f"/items/{item}/comments").json["comments"][0]["body"], "Good.\nBut late.")
        self.assertEqual(call("DELETE", f"/comments/{comment}").status, 204)

        drawn = call("POST", f"/items/{item}/attachments", {
            "name": "p.vlra", "docType": "VeloraDocType", "upload": call.client.upload(service.package(service.PNG))}).json["id"]
        for path in (f"/items/{item}/picture", f"/attachments/{drawn}/versions/1/picture"):
            self.assertEqual(call("GET", path).body, service.PNG)
        self.assertEqual(call("DELETE", f"/attachments/{drawn}").status, 204)
        upload = call("POST", "/uploads", headers={**TUS, "Upload-Length": "4"}).headers["location"].rsplit("/", 1)[1]
        call("PATCH", f"/uploads/{upload}", body=b"four", headers={
            **TUS, "Upload-Offset": "0", "Content-Type": "application/offset+octet-stream"})
        self.assertEqual(call("HEAD", f"/uploads/{upload}", headers=TUS).headers["upload-offset"], "4")
        made = call("POST", f"/items/{item}/attachments",
                    {"name": "a.tdsn", "docType": "VeloraDocType", "upload": upload, "label": "Document created"})
        attachment = f"/attachments/{made.json['id']}"
        for tail in ("", ".xml", "/versions", "/versions/1", "/versions/latest", "/versions/1/content"):
            self.assertEqual(call("GET", attachment + tail).status, 200, tail)
        self.assertEqual(len(call("GET", f"/items/{item}/attachments").json["attachments"]), 1)
        again = call.client.upload(b"five!")
        self.assertEqual(call("POST", attachment + "/versions", {"upload": again, "madeFrom": 0}).json["code"], "outdated")
        self.assertEqual(call("POST", attachment + "/versions", {"upload": again, "madeFrom": 1}).status, 201)
        given_up = call.client.begin(7).headers["location"].rsplit("/", 1)[1]
        self.assertEqual(call("DELETE", f"/uploads/{given_up}", headers=TUS).status, 204)

        self.assertEqual(call("PUT", f"/favourites/{item}").status, 204)
        self.assertEqual(len(call("GET", "/favourites").json["items"]), 1)
        self.assertEqual(call("DELETE", f"/favourites/{item}").status, 204)
        self.assertEqual(call("GET", "/search?q=sec").json["items"][0]["id"], item)
        asked = call("POST", "/program/requests", {"name": "Any", "args": {"itemId": item, "label": "x"}}).json
        self.assertEqual(call("POST", f"/program/requests/{asked['id']}/take", {}).json["args"], {"itemId": item, "label": "x"})
        self.assertEqual(call("PUT", f"/program/requests/{asked['id']}", {"state": "failed", "detail": "why"}).status, 204)
        self.assertEqual(call("GET", f"/program/requests/{asked['id']}").json["detail"], "why")
        ticket = call("POST", "/program/requests", {"name": "Any", "args": {}}).json["ticket"].split("/")[1]
        for status in (200, 404):
            self.assertEqual(call("POST", "/program/tickets", {"ticket": ticket}).status, status)
        self.assertEqual(call("DELETE", attachment).status, 204)
        self.assertEqual(call("DELETE", f"/items/{item}").status, 204)
        kinds = {event["kind"] for event in call("GET", "/events?after=0&limit=500").json["events"]}
        schema = self.description.document["components"]["schemas"]["Event"]["properties"]["kind"]["enum"]
        self.assertEqual(kinds, set(schema))
        missing = {f"{line.split()[0]} {line.split()[1]}" for line in subprocess.check_output(
            [service.PROGRAM, "--list-routes"], text=True).splitlines()} - call.seen
        # What signed requests get, and what needs a provider of sign-ins, is asked for where they are tested.
        self.assertEqual(missing, {"POST /oauth/access_token", "GET /dashboard/provider", "POST /dashboard/provider", "DELETE /dashboard/provider",
                                   "GET /dashboard/back", "GET /oauth/provider"})

    def test_what_the_description_forbids_is_refused_by_name(self):
        call = Checked(self.boss, self.description)
        items = f"/workspaces/{self.workspace}/items"
        for body, name in [({}, "caption"), ({"caption": ""}, "caption"), ({"caption": 7}, "caption"),
                           ({"caption": "x" * 256}, "caption"), ({"caption": "x", "colour": "red"}, "colour"),
                           ({"caption": "x", "description": "y" * 20001}, "description"),
                           ({"caption": "x", "linkedItemId": 1.5}, "linkedItemId"),
                           ({"caption": "x", "linkedItemId": "1"}, "linkedItemId")]:
            answer = call("POST", items, body)
            self.assertEqual((answer.status, f'"{name}"' in answer.json["detail"]), (400, True), answer)
        for text in (b"", b"{", b"[]", b"\xff\xfe", b'{"caption":"\xff"}', b"[" * 5000, b'{"caption":"x"} more'):
            self.assertEqual(call("POST", items, body=text, headers={"Content-Type": "application/json"}).status, 400)
        self.assertEqual(call("POST", items, body=b"{}", headers={"Content-Type": "text/plain"}).status, 415)
        self.assertEqual(call("POST", items, body=b" " * 70000, headers={"Content-Type": "application/json"}).status, 413)
        for path in ("?limit=0", "?limit=501", "?limit=x", "?after=-1", "?limit=99999999999999999999"):
            self.assertEqual(call("GET", items + path).status, 400, path)


if __name__ == "__main__":
    service.main()
