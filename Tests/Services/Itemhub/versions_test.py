"""Items, versions and events when several clients are at them; hostile texts; what is kept and what is told."""

import concurrent.futures
import socket
import threading
import time
import unittest
import urllib.parse
import xml.etree.ElementTree

import service
from service import Client, ServiceTest, sha256


class VersionsTest(ServiceTest):
    def clients(self, count):
        return [self.service.client(self.boss.token) for _ in range(count)]

    def at_once(self, calls):
        start = threading.Barrier(len(calls))

        def run(call):
            start.wait()
            return call()

        with concurrent.futures.ThreadPoolExecutor(len(calls)) as pool:
            return list(pool.map(run, calls))

    def test_of_clients_that_race_one_makes_the_version_and_the_others_learn_who(self):
        attachment = self.attachment(b"first")
        path = f"/attachments/{attachment}/versions"
        uploads = [self.boss.upload(f"by {i}".encode()) for i in range(6)]
        answers = self.at_once([lambda c=client, u=upload: c("POST", path, {"upload": u, "madeFrom": 1, "label": u[:8]})
                                for client, upload in zip(self.clients(6), uploads)])
        self.assertEqual(sorted(each.status for each in answers), [201] + [409] * 5)
        winner = next(each for each in answers if each.status == 201).json
        for each in answers:
            if each.status == 409:
                self.assertEqual((each.json["code"], each.json["latest"]), ("outdated", winner))
        self.assertEqual((winner["number"], winner["author"]), (2, "boss"))
        # Who lost still has his upload, and makes the next version of it.
        loser = uploads[next(i for i, each in enumerate(answers) if each.status == 409)]
        self.assertEqual(self.boss("POST", path, {"upload": loser, "madeFrom": 2}).json["number"], 3)
        self.assertEqual([v["number"] for v in self.boss("GET", path).json["versions"]], [1, 2, 3])

    def test_of_changes_that_race_none_is_lost_unnoticed(self):
        item = self.item()
        etag = self.boss("GET", f"/items/{item}").headers["etag"]
        answers = self.at_once([lambda c=client, i=i: c("PATCH", f"/items/{item}", {"caption": f"By {i}"}, {"If-Match": etag})
                                for i, client in enumerate(self.clients(5))])
        self.assertEqual(sorted(each.status for each in answers), [200] + [412] * 4)
        changed = next(each for each in answers if each.status == 200)
        self.assertEqual(self.boss("GET", f"/items/{item}").json["caption"], changed.json["caption"])
        self.assertEqual({each.headers["etag"] for each in answers}, {changed.headers["etag"]})
        self.assertEqual(self.boss("PATCH", f"/items/{item}", {"caption": "x"}).status, 428)
        self.assertEqual(self.boss("DELETE", f"/items/{item}", headers={"If-Match": etag}).status, 412)

    def test_a_workspace_is_listed_in_the_order_that_was_asked_for(self):
        place = int(self.service.admin("workspace", "add", "acme", "Sorted"))
        made = {caption: self.boss("POST", f"/workspaces/{place}/items", {"caption": caption}).json["id"] for caption in "bDaC"}
        self.attachment(item=made["D"])

        def listed(order, limit=3):
            shown, after = [], ""
            while after is not None:
                part = self.boss("GET", f"/workspaces/{place}/items?order={order}&limit={limit}{after}").json
                shown += [item["caption"] for item in part["items"]]
                after = f"&after={part['next']}" if "next" in part else None
            return "".join(shown)

        wanted = {"oldest": "bDaC", "newest": "CaDb", "changed": "DCab", "name": "abCD"}
        for order, captions in wanted.items():
            self.assertEqual([listed(order, limit) for limit in (1, 3, 9)], [captions] * 3, order)
        # What was removed meanwhile is a place to go on from all the same.
        self.boss("DELETE", f"/items/{made['a']}")
        after = self.boss("GET", f"/workspaces/{place}/items?order=name&after={made['a']}").json
        self.assertEqual([item["caption"] for item in after["items"]], ["b", "C", "D"])
        self.assertEqual(self.boss("GET", f"/workspaces/{place}/items?order=price").status, 400)

    def test_who_was_away_for_ten_thousand_events_gets_each_once_and_in_order(self):
        item = self.item("Busy")
        after = self.boss("GET", "/events?after=now").json["next"]
        account = self.service.sql("SELECT id FROM account WHERE name = 'boss'")[0][0]
        numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000)"
        self.service.sql(f"{numbers} INSERT INTO event (tenant_id, workspace_id, account_id, kind, item_id, created_at) "
                         f"SELECT 1, {self.workspace}, {account}, 'item.changed', {item}, i FROM n")
        read, next_ = [], after
        while part := self.boss("GET", f"/events?after={next_}&limit=500").json["events"]:
            read += [event["serial"] for event in part]
            next_ = read[-1]
        self.assertEqual(read, list(range(after + 1, after + 10001)))
        # A stream that was cut goes on behind what it told last.
        stream = self.service.client(self.boss.token)
        stream.connection.request("GET", "/events?after=now", headers={"Accept": "text/event-stream", "Last-Event-ID": str(after),
                                                                       "Authorization": f"Bearer {self.boss.token}"})
        told = stream.connection.getresponse()
        serials = []
        while len(serials) < 10000:
            line = told.readline()
            self.assertTrue(line)
            if line.startswith(b"id: "):
                serials.append(int(line[4:]))
        self.assertEqual(serials, read)

    def test_a_repeated_request_does_nothing_twice(self):
        items = f"/workspaces/{self.workspace}/items"
        post = lambda client, body, key: client("POST", items, body, {"Idempotency-Key": key})
        answers = self.at_once([lambda c=client: post(c, {"caption": "Once"}, "k1") for client in self.clients(5)])
        self.assertEqual({(each.status, each.body, each.headers["location"]) for each in answers},
                         {(201, answers[0].body, answers[0].headers["location"])})
        self.assertEqual(sum("idempotency-replayed" in each.headers for each in answers), 4)
        self.assertEqual(post(self.boss, {"caption": "Other"}, "k1").json["code"], "key_reused")
        # What failed didn't happen, and may succeed later under the same key.
        self.assertEqual(post(self.boss, {"caption": "x", "linkedItemId": 999999}, "k2").status, 404)
        self.assertEqual(post(self.boss, {"caption": "x"}, "k2").status, 201)
        second = self.service.member("acme", "second", "writer")
        self.assertNotEqual(post(second, {"caption": "Once"}, "k1").json["id"], answers[0].json["id"])
        upload, attachment = self.boss.upload(b"again"), self.attachment(b"once")
        versions = [self.boss("POST", f"/attachments/{attachment}/versions", {"upload": upload, "madeFrom": 1},
                              {"Idempotency-Key": "k3"}).json["number"] for _ in range(2)]
        self.assertEqual(versions, [2, 2])

    def test_parts_of_a_content_are_what_was_asked_for(self):
        data = bytes(range(256)) * 400
        path = f"/attachments/{self.attachment(data)}/versions/1/content"
        whole = self.boss("GET", path)
        self.assertEqual((whole.body, whole.headers["etag"]), (data, f'"{sha256(data)}"'))
        size = len(data)
        for text, begin, end in [("0-0", 0, 1), ("5-9", 5, 10), ("100-", 100, size), ("-7", size - 7, size),
                                 ("-999999", 0, size), (f"{size - 1}-", size - 1, size), (f"0-{size * 2}", 0, size)]:
            part = self.boss("GET", path, headers={"Range": f"bytes={text}"})
            self.assertEqual((part.status, part.body), (206, data[begin:end]), text)
            self.assertEqual(part.headers["content-range"], f"bytes {begin}-{end - 1}/{size}")
        for text in (f"{size}-", f"{size + 5}-{size + 9}", "-0"):
            refused = self.boss("GET", path, headers={"Range": f"bytes={text}"})
            self.assertEqual((refused.status, refused.headers.get("content-range")), (416, f"bytes */{size}"), text)
        self.assertEqual(self.boss("GET", path, headers={"Range": "bytes=0-1,5-6"}).body, data)
        self.assertEqual(self.boss("GET", path, headers={"Range": "bytes=0-1", "If-Range": '"old"'}).body, data)
        self.assertEqual(self.boss("GET", path, headers={"If-None-Match": whole.headers["etag"]}).status, 304)
        # A range is for contents; it cuts nothing else.
        self.assertEqual(self.boss("GET", "/session", headers={"Range": "bytes=0-1"}).json["account"], "boss")
        self.assertEqual(self.boss("GET", "/items/999999", headers={"Range": "bytes=0-1"}).json["code"], "not_found")

    def test_hostile_names_come_back_harmless(self):
        evil = "<img src=x onerror=alert(1)>&\"'\u202egnp.exe\u0000\r\nSet-Cookie: a=b\u2028 ]]> \U0001f600 '; DROP TABLE item; --"
        item = self.boss("POST", f"/workspaces/{self.workspace}/items", {"caption": evil, "description": evil}).json
        for character in "\u202e\u0000\r\n":
            self.assertNotIn(character, item["caption"])
        self.assertIn("<img", item["caption"])
        self.assertIn("\U0001f600", item["caption"])
        for name, clean in [("../../etc/passwd", "_.._etc_passwd"), ("C:\\temp\\a.tdsn", "C:_temp_a.tdsn"), (".hidden", "hidden")]:
            made = self.boss("POST", f"/items/{item['id']}/attachments", {"name": name, "docType": "VeloraDocType"})
            self.assertEqual(made.json["name"], clean)
        for name in ("..", "./", "\u0001", "   "):
            self.assertIn(self.boss("POST", f"/items/{item['id']}/attachments", {"name": name, "docType": "x"}).status, (201, 400))
        attachment = self.attachment(b"x", item["id"], evil)
        described = self.boss("GET", f"/attachments/{attachment}.xml")
        root = xml.etree.ElementTree.fromstring(described.body)
        self.assertIn("<img src=x onerror=alert(1)>", root.find("file").text)
        self.assertEqual(root.find("sha256").text, sha256(b"x"))
        content = self.boss("GET", urllib.parse.urlparse(root.find("content").text).path)
        self.assertNotIn("set-cookie", content.headers)
        self.assertTrue(content.headers["content-disposition"].isascii())
        for answer in (described, content, self.boss("GET", "/nothing")):
            self.assertEqual(answer.headers["x-content-type-options"], "nosniff")
            self.assertIn("default-src 'none'", answer.headers["content-security-policy"])

    def test_search_finds_beginnings_of_words_best_first_and_nothing_of_others(self):
        bracket = self.item("Bracket", description="holds the zylinder")
        mention = self.item("Plate", description="below the bracket")
        self.item("Überwurfmutter")
        found = lambda text: [i["id"] for i in self.boss("GET", "/search?" + urllib.parse.urlencode({"q": text})).json["items"]]
        self.assertEqual(found("brack"), [bracket, mention])
        self.assertEqual(found("BRACKET zyl"), [bracket])
        self.assertEqual(len(found("uberwurf")), 1)
        self.assertEqual(found("br"), [mention, bracket])
        for text in ("", " ", '"', "*", "brack OR plate", "NEAR(a b)", "caption:brack", "-bracket'", "\u0000", "a" * 200, "( AND"):
            self.assertEqual(self.boss("GET", "/search?" + urllib.parse.urlencode({"q": text})).status, 200, text)
        self.assertEqual(found("caption:brack"), [])
        # More words than are told apart begin so; and of one that is the beginning of another, both are meant.
        gears = [self.item(f"Gear{'abcdefghijkl'[n]} shared") for n in range(12)]
        self.assertEqual(set(found("gear share")), set(gears))
        self.assertEqual(found("geara SHARED"), gears[:1])
        self.assertEqual(found("gear shared nothing"), [])
        pin, pinion = self.item("Pin of the gear_box"), self.item("Pinion")
        self.assertEqual(set(found("pin")), {pin, pinion})
        self.assertEqual(found("gear_box"), [pin])
        self.attachment(item=mention, name="gehaeuse.tdsn")
        self.assertEqual(found("gehaeuse"), [mention])
        self.boss("PATCH", f"/items/{bracket}", {"caption": "Bügel"}, {"If-Match": "*"})
        self.assertEqual((found("bugel"), found("brack zyl")), ([bracket], []))
        self.boss("DELETE", f"/items/{mention}")
        self.assertEqual(found("gehaeuse"), [])


class EventsTest(ServiceTest):
    def last(self):
        return self.boss("GET", "/events?limit=500").json["next"]

    def test_who_waits_hears_at_once_and_only_what_he_may(self):
        after = self.last()
        reader = self.service.member("acme", "reader", "reader", self.workspace)
        hidden = self.boss("POST", "/workspaces", {"name": "Hidden"}).json["id"]
        with concurrent.futures.ThreadPoolExecutor(1) as pool:
            waiting = pool.submit(reader, "GET", f"/events?after={after}&wait=20")
            time.sleep(0.2)
            self.boss("POST", f"/workspaces/{hidden}/items", {"caption": "Secret"})
            self.boss("PUT", f"/favourites/{self.item('Mine')}")
            began = time.monotonic()
            events = waiting.result().json["events"]
        self.assertLess(time.monotonic() - began, 10)
        self.assertEqual([event["kind"] for event in events], ["item.added"])
        heard = reader("GET", f"/events?after={after}").json["events"]
        self.assertEqual({event["workspaceId"] for event in heard}, {self.workspace})
        self.assertNotIn("favourite.added", [event["kind"] for event in heard])
        self.assertEqual(reader("GET", f"/events?after={heard[-1]['serial']}&wait=1").json["events"], [])

    def test_a_stream_tells_goes_on_where_it_ended_and_ends_with_its_token(self):
        token = self.service.admin("token", "add", "acme", "boss", "reader", 1)
        after = self.last()
        item = self.item("Heard")
        with socket.create_connection(("127.0.0.1", self.service.port), timeout=30) as raw:
            raw.sendall(f"GET /events?after=0 HTTP/1.1\r\nHost: x\r\nConnection: close\r\nAccept: text/event-stream\r\nLast-Event-ID: {after}\r\n"
                        f"Authorization: Bearer {token}\r\n\r\n".encode())
            text = b""
            while b"item.added" not in text:
                text += raw.recv(65536)
            self.assertIn(f'"itemId":{item}'.encode(), text)
            self.assertIn(b"text/event-stream", text)
            self.assertNotIn(b"workspace.added", text)
            self.boss("DELETE", f"/tokens/{self.service.client(token)('GET', '/session').json['tokenId']}")
            self.item("Unheard")
            while more := raw.recv(65536):
                text += more
            # At most what was on its way when the token ended.
            self.assertLessEqual(text.count(b"event: "), 2)

    def test_listeners_leave_room_for_those_who_ask(self):
        after = self.last()
        listeners = [Client(self.service.port, self.boss.token) for _ in range(100)]
        for each in listeners:
            each.connection.request("GET", f"/events?after={after}&wait=30", headers={"Authorization": f"Bearer {each.token}"})
        self.assertEqual(self.boss("GET", "/session").status, 200)
        self.item("Wakes all")
        for each in listeners:
            self.assertIn(b"item.added", each.connection.getresponse().read())


class WireTest(ServiceTest):
    """What arrives isn't always HTTP."""

    def talk(self, data, finish=True):
        with socket.create_connection(("127.0.0.1", self.service.port), timeout=30) as raw:
            try:
                raw.sendall(data)
                if finish:
                    raw.shutdown(socket.SHUT_WR)
                answer = b""
                while more := raw.recv(65536):
                    answer += more
                return answer
            except (ConnectionResetError, BrokenPipeError):
                return b"reset"

    def test_noise_and_endless_heads_bring_nothing_down(self):
        for data in (b"", b"\0" * 1000, b"GET", b"GET / HTTP/9.9\r\n\r\n", b"\r\n" * 100, b"GET /%zz%00%2e%2e/ HTTP/1.1\r\nHost: x\r\n\r\n",
                     b"POST /tokens HTTP/1.1\r\nContent-Length: -5\r\n\r\n", b"POST /tokens HTTP/1.1\r\nContent-Length: 99\r\n\r\n{",
                     b"GET / HTTP/1.1\r\nRange: bytes=9-1\r\n\r\n"):
            self.talk(data)
        # No end of line, and no end of lines: neither may take memory.
        for data in (b"GET /" + b"a" * 300_000, b"GET / HTTP/1.1\r\n" + b"X-Header: aaaaaaaaaaaaaaaaaaaaaaaaaaa\r\n" * 10_000):
            self.assertLess(len(self.talk(data, finish=False)), 2000)
        both = self.talk(b"POST /tokens HTTP/1.1\r\nContent-Length: 4\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\nGET / HTTP/1.1\r\n\r\n")
        self.assertIn(b"two_lengths", both)
        self.assertEqual(both.count(b"HTTP/1.1 "), 1)
        self.assertEqual(self.boss("GET", "/health").status, 200)

    def test_a_body_that_nobody_wanted_is_no_second_request(self):
        inner = b"GET /health HTTP/1.1\r\nHost: x\r\n\r\n"
        for head in (b"POST /workspaces", b"GET /session", b"POST /nothing", b"DELETE /tokens/1"):
            answer = self.talk(head + b" HTTP/1.1\r\nContent-Length: %d\r\n\r\n" % len(inner) + inner)
            self.assertEqual(answer.count(b"HTTP/1.1 "), 1, answer)

    def test_a_path_says_which_methods_it_has(self):
        wrong = self.boss("PUT", "/workspaces")
        self.assertEqual((wrong.status, wrong.headers["allow"]), (405, "GET, POST"))
        options = self.boss("OPTIONS", "/uploads")
        self.assertEqual((options.status, options.headers["tus-version"]), (204, "1.0.0"))
        self.assertEqual(self.boss("GET", "/items/1/2/3").status, 404)
        head = self.boss("HEAD", "/session")
        self.assertEqual((head.status, head.body), (200, b""))


if __name__ == "__main__":
    service.main()
