"""The service on PostgreSQL alone: several servers, of which one goes or lags; several processes of the service; few connections."""

import concurrent.futures
import os
import random
import re
import signal
import threading
import time
import unittest

import postgres
import service
from service import Service


class Databases(unittest.TestCase):
    """With a server of its own, which a test may end, and services on one database of it."""

    def server(self, **settings):
        made = postgres.Server(**settings)
        self.addCleanup(made.close)
        return made

    def service(self, reach, **settings):
        made = Service(database=reach, **settings)
        self.addCleanup(made.close)
        return made

    def begun(self, reach, **settings):
        """A service with a customer, a workspace and its administrator."""
        first = self.service(reach, **settings)
        first.admin("customer", "add", "acme")
        self.items = f"/workspaces/{first.admin('workspace', 'add', 'acme', 'Designs')}/items"
        first.start()
        return first, first.member("acme", "boss", "admin")

    def until(self, what, seconds=30):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            try:
                if found := what():
                    return found
            except OSError:
                pass
            time.sleep(0.1)
        self.fail("It doesn't come.")


class ServersTest(Databases):
    def setUp(self):
        self.primary = self.server().initialised().start()
        database = self.primary.database()
        self.replica = self.server(hot_standby="on").copied(self.primary).start()
        hosts = ", ".join(f"127.0.0.1:{each.port}" for each in (self.replica, self.primary))
        self.reach = {"driver": "postgresql", "name": database, "host": hosts, "port": 0, "user": postgres.USER, "readReplicas": True}

    def asked(self, server):
        """How many statements of ours a server has answered, more or less."""
        return int(server.sql("SELECT sum(xact_commit) FROM pg_stat_database WHERE datname LIKE 'items%'")[0][0])

    def test_lists_come_from_a_replica_but_never_behind_what_was_answered(self):
        each, boss = self.begun(self.reach)
        for number in range(30):
            made = boss("POST", self.items, {"caption": f"Flange {number}"}).json["id"]
            # By another connection, and by the search.
            for client in (boss, each.client(boss.token)):
                self.assertEqual(client("GET", f"{self.items}?order=newest&limit=1").json["items"][0]["id"], made)
            self.assertEqual(len(boss("GET", "/search?q=flange&limit=100").json["items"]), number + 1)
        self.until(lambda: self.asked(self.replica) > 30)  # It counts now and then.
        # One that has stopped following is left aside.
        self.replica.sql("SELECT pg_wal_replay_pause()")
        made = boss("POST", self.items, {"caption": "Behind"}).json["id"]
        self.assertEqual(boss("GET", f"{self.items}?order=newest&limit=1").json["items"][0]["id"], made)
        self.replica.stop(signal.SIGKILL)
        self.assertEqual([boss("GET", self.items).status for _ in range(5)], [200] * 5)

    def test_a_backup_is_made_of_the_server_that_takes_changes(self):
        each, boss = self.begun(self.reach)
        made = boss("POST", self.items, {"caption": "Kept"}).json["id"]
        self.replica.sql("SELECT pg_wal_replay_pause()")
        last = boss("POST", self.items, {"caption": "Kept, too"}).json["id"]
        each.admin("backup", each.data / "backup")
        restored = self.primary.database()
        self.primary.run("pg_restore", "--no-owner", "-h", "127.0.0.1", "-p", self.primary.port, "-U", postgres.USER, "-d", restored,
                         each.data / "backup/database")
        other = self.service({**self.primary.reach(restored), "host": "127.0.0.1"}, keyFile=str(each.data / "service.key")).start()
        self.assertEqual([item["id"] for item in other.client(boss.token)("GET", self.items).json["items"]], [made, last])

    def test_when_the_primary_goes_its_successor_is_found_and_nothing_is_lost_or_doubled(self):
        each, boss = self.begun(self.reach)
        # What was answered must be on both.
        self.primary.sql("ALTER SYSTEM SET synchronous_standby_names = '*'")
        self.primary.sql("SELECT pg_reload_conf()")
        self.until(lambda: self.primary.sql("SELECT sync_state FROM pg_stat_replication") == [("sync",)])
        answered, stop = [], threading.Event()

        def work():
            client = each.client(boss.token)
            for number in range(100_000):
                if stop.is_set():
                    return
                # As long as there is no answer, the same request is made again.
                for _ in range(600):
                    made = client("POST", self.items, {"caption": f"Part {number}"}, {"Idempotency-Key": f"part {number}"})
                    if made.status == 201:
                        break
                    self.assertEqual(made.status, 503, made)
                    time.sleep(0.1)
                answered.append(made.json["id"])

        with concurrent.futures.ThreadPoolExecutor(1) as pool:
            working = pool.submit(work)
            self.until(lambda: len(answered) > 20)
            self.primary.stop(signal.SIGKILL)
            before = len(answered)
            self.replica.run("pg_ctl", "promote", "-D", self.replica.data)
            self.until(lambda: len(answered) > before + 20)
            stop.set()
            working.result()
        kept, after = [], 0
        while after is not None:
            part = boss("GET", f"{self.items}?limit=500&after={after}").json
            kept += [item["id"] for item in part["items"]]
            after = part.get("next")
        self.assertEqual(kept, answered)


class ServerTest(Databases):
    def setUp(self):
        self.server_ = self.server(max_connections=20).initialised().start()
        self.reach = self.server_.reach(self.server_.database())

    def test_a_server_that_was_away_is_found_again_and_meanwhile_missed_by_name(self):
        each, boss = self.begun({**self.reach, "patienceMs": 500})
        self.server_.stop(signal.SIGINT)
        gone = boss("POST", self.items, {"caption": "x"})
        self.assertEqual((gone.status, gone.json["code"], gone.headers["retry-after"]), (503, "no_database", "10"))
        self.assertEqual(boss("GET", "/health").status, 503)
        self.server_.start()
        self.assertEqual(boss("POST", self.items, {"caption": "x"}).status, 201)
        # Of a start while nobody asked, nobody learns.
        boss("GET", self.items)
        self.server_.stop(signal.SIGINT)
        self.server_.start()
        self.assertEqual(boss("GET", self.items).status, 200)
        event = boss("GET", "/events?after=now").json["next"]
        self.assertEqual(boss("POST", self.items, {"caption": "y"}).status, 201)
        self.assertEqual(boss("GET", f"/events?after={event}&wait=20").json["events"][0]["kind"], "item.added")

    def test_listeners_need_no_connection_and_who_asks_beside_them_waits_for_none(self):
        each, boss = self.begun({**self.reach, "connections": 4, "patienceMs": 2000})
        after = boss("GET", "/events?after=now").json["next"]
        with concurrent.futures.ThreadPoolExecutor(60) as pool:
            listening = [pool.submit(each.client(boss.token), "GET", f"/events?after={after}&wait=30") for _ in range(60)]
            asked = [each.client(boss.token)("GET", "/workspaces").status for _ in range(40)]
            self.assertEqual(asked, [200] * 40)
            self.assertFalse(any(future.done() for future in listening))
            self.assertEqual(boss("POST", self.items, {"caption": "Heard"}).status, 201)
            self.assertEqual({len(future.result().json["events"]) for future in listening}, {1})
        many = [each.client(boss.token) for _ in range(40)]
        with concurrent.futures.ThreadPoolExecutor(40) as pool:
            self.assertEqual({answer.status for answer in pool.map(lambda client: client("GET", self.items), many)}, {200})
        self.assertLessEqual(len(self.server_.sql("SELECT 1 FROM pg_stat_activity WHERE application_name = 'quillet-itemhub'")), 5)

    def test_what_one_process_notes_another_ones_listener_hears(self):
        first, boss = self.begun(self.reach)
        second = first.beside()
        self.addCleanup(second.close)
        other = second.client(boss.token)
        after = other("GET", "/events?after=now").json["next"]
        for number in range(5):
            with concurrent.futures.ThreadPoolExecutor(1) as pool:
                heard = pool.submit(other, "GET", f"/events?after={after}&wait=30")
                made = boss("POST", self.items, {"caption": f"{number}"}).json["id"]
                answer = heard.result().json
            self.assertEqual([event["itemId"] for event in answer["events"]], [made])
            after = answer["next"]
        # What one has, the other one hands out, and what one forbids, the other one refuses.
        item = boss("POST", self.items, {"caption": "Shared"}).json["id"]
        boss("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": boss.upload(b"shared")})
        attachment = other("GET", f"/items/{item}/attachments").json["attachments"][0]["id"]
        self.assertEqual(other("GET", f"/attachments/{attachment}/versions/1/content").body, b"shared")
        first.admin("account", "disable", "acme", "boss")
        self.assertEqual({boss("GET", "/session").status, other("GET", "/session").status}, {401})

    def test_a_team_that_grows_moves_with_all_that_it_has_and_back(self):
        service.ON_POSTGRESQL = False
        self.addCleanup(setattr, service, "ON_POSTGRESQL", True)
        small = Service()
        self.addCleanup(small.close)
        small.admin("customer", "add", "acme")
        self.items = f"/workspaces/{small.admin('workspace', 'add', 'acme', 'Designs')}/items"
        boss = small.start().member("acme", "boss", "admin")
        made = [boss("POST", self.items, {"caption": caption, "description": "Zweizeilig:\n\u00e9\u2192\U0001f600"}).json for caption in ("Flange", "Gear", "Gone")]
        upload = boss.upload(b"moved")
        attachment = boss("POST", f"/items/{made[0]['id']}/attachments", {"name": "a.vlra", "docType": "x", "upload": upload}).json["id"]
        boss("POST", f"/items/{made[0]['id']}/links", {"itemId": made[1]["id"]})
        boss("POST", f"/items/{made[0]['id']}/comments", {"body": "Good"})
        boss("PUT", f"/favourites/{made[1]['id']}")
        boss("DELETE", f"/items/{made[2]['id']}")
        team = boss("POST", "/teams", {"name": "Pumps"}).json["id"]
        boss("PUT", f"/teams/{team}/members/boss")
        # All that there is, as the account sees it.
        paths = ["/workspaces", self.items, "/favourites", "/tokens", "/events?after=0&limit=500", "/accounts", "/teams", "/search?q=fla", "/search?q=vlra",
                 f"/items/{made[0]['id']}/links", f"/items/{made[0]['id']}/comments", f"/attachments/{attachment}/versions/1/content"]
        seen = lambda client: [client("GET", path).body for path in paths]
        before = seen(boss)
        small.stop()

        back = Service()
        self.addCleanup(back.close)
        large = Service(database=self.reach, blobs=str(small.blobs), keyFile=str(small.data / "service.key"))
        self.addCleanup(large.close)
        small.admin("database", "copy", large.config)
        self.assertIn("has customers already", small.admin("database", "copy", large.config, check=False).stderr)
        moved = large.start().client(boss.token)
        self.assertEqual(seen(moved), before)
        new = moved("POST", self.items, {"caption": "New"})
        self.assertEqual((new.status, new.json["id"]), (201, made[2]["id"] + 1))
        large.stop()
        back.configure(blobs=str(small.blobs), keyFile=str(small.data / "service.key"))
        large.admin("database", "copy", back.config)
        again = back.start().client(boss.token)
        self.assertEqual([item["caption"] for item in again("GET", self.items).json["items"]], ["Flange", "Gear", "New"])
        self.assertEqual(again("GET", "/search?q=new").json["items"][0]["caption"], "New")
        # No table was forgotten.
        count = lambda rows: {name: int(number) for name, number in rows}
        tables = [row[0] for row in back.sql("SELECT name FROM sqlite_master WHERE type = 'table'") if not row[0].startswith(("sqlite_", "search_"))]
        each = " UNION ALL ".join(f"SELECT '{table}', count(*) FROM {table}" for table in tables if table not in ("audit", "schema_version"))
        self.assertEqual(count(back.sql(each)), count(self.server_.sql(each, self.reach["name"])))

    def test_what_a_proxy_repeats_to_both_processes_is_done_once(self):
        first, boss = self.begun(self.reach)
        second = first.beside()
        self.addCleanup(second.close)
        pairs = [(first.client(boss.token), second.client(boss.token)) for _ in range(8)]
        with concurrent.futures.ThreadPoolExecutor(16) as pool:
            made = list(pool.map(lambda at: pairs[at // 2][at % 2]("POST", self.items, {"caption": f"Part {at // 2}"},
                                                                  {"Idempotency-Key": f"part {at // 2}"}), range(16)))
        self.assertLessEqual({answer.status for answer in made}, {201, 409, 503})
        again = [boss("POST", self.items, {"caption": f"Part {number}"}, {"Idempotency-Key": f"part {number}"}) for number in range(8)]
        self.assertEqual({answer.status for answer in again}, {201})
        kept = boss("GET", f"{self.items}?limit=500").json["items"]
        self.assertEqual(sorted(item["caption"] for item in kept), sorted(f"Part {number}" for number in range(8)))
        for number, answer in enumerate(again):
            self.assertLessEqual({each.json["id"] for each in made[2 * number:2 * number + 2] if each.status == 201}, {answer.json["id"]})

    def test_whatever_is_killed_when_nothing_is_lost_and_nothing_is_there_twice(self):
        first, boss = self.begun({**self.reach, "patienceMs": 2000})
        second = first.beside()
        self.addCleanup(second.close)
        services, draw, stop = [first, second], random.Random(int(os.environ.get("QUILLET_SEED", "7"))), threading.Event()
        answered, item = {}, boss("POST", self.items, {"caption": "Saved"}).json["id"]
        attachment = boss("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x"}).json["id"]

        def patiently(ask):
            for attempt in range(1200):
                try:
                    answer = ask(services[attempt % 2].client(boss.token))
                    if answer.status not in (502, 503):
                        return answer
                except OSError:
                    pass
                time.sleep(0.05)
            raise AssertionError("It isn't answered.")

        def save(number):
            """A version, as a client makes it whose every answer may be lost."""
            data, upload = f"version {number}".encode() * 500, None
            while True:
                upload = upload or patiently(lambda client: client.begin(len(data))).headers["location"].rsplit("/", 1)[1]
                told = patiently(lambda client: client("HEAD", f"/uploads/{upload}", headers=service.TUS))
                if told.status == 200 and (offset := int(told.headers["upload-offset"])) < len(data):
                    patiently(lambda client: client.send(upload, offset, data[offset:]))
                    continue
                made = patiently(lambda client: client("POST", f"/attachments/{attachment}/versions", {"upload": upload, "madeFrom": number - 1},
                                                       {"Idempotency-Key": f"version {number}"}))
                if made.status != 201:
                    told = [line for line in (self.server_.folder / "log").read_text().splitlines() if re.search("ERROR|FATAL|PANIC", line)]
                    self.fail("\n".join([str(made), first.log(), second.log(), *told[-10:]]))
                return made.json

        def work():
            number = 0
            while not stop.is_set():
                number += 1
                answered[number] = save(number)

        with concurrent.futures.ThreadPoolExecutor(1) as pool:
            working = pool.submit(work)
            for _ in range(12):
                time.sleep(draw.uniform(0.05, 0.4))
                victim = draw.choice([first, second, self.server_])
                if victim is self.server_:
                    victim.stop(signal.SIGQUIT if draw.random() < 0.5 else signal.SIGKILL)
                    self.until(lambda: victim.start())
                else:
                    victim.stop(signal.SIGKILL)
                    victim.start(port=victim.port)
            stop.set()
            working.result()
        self.assertGreater(len(answered), 3)
        boss = first.client(boss.token)
        versions, after = [], 0
        while after is not None:
            part = boss("GET", f"/attachments/{attachment}/versions?limit=500&after={after}").json
            versions += part["versions"]
            after = part.get("next")
        # Each process tells its own address.
        told = lambda version: {name: value for name, value in version.items() if name != "content"}
        self.assertEqual([told(version) for version in versions], [told(answered[number]) for number in range(1, len(answered) + 1)])
        for number in (1, len(answered)):
            self.assertEqual(boss("GET", f"/attachments/{attachment}/versions/{number}/content").body, f"version {number}".encode() * 500)

    def test_of_programs_that_start_at_once_one_brings_the_database_up_to_date(self):
        starting = [self.service(self.reach) for _ in range(4)]
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            list(pool.map(Service.start, starting))
        self.assertTrue(all(each.port for each in starting))
        numbers = [row[0] for row in self.server_.sql("SELECT number FROM schema_version ORDER BY number", self.reach["name"])]
        self.assertEqual(numbers, [str(i + 1) for i in range(len(numbers))])

    def test_what_resembles_a_caption_is_found_where_nothing_is_spelled_so(self):
        each, boss = self.begun(self.reach)
        made = {caption: boss("POST", self.items, {"caption": caption}).json["id"] for caption in ("Flange", "Gear housing", "Übergang")}
        found = lambda text: [item["id"] for item in boss("GET", f"/search?q={text}").json["items"]]
        self.assertEqual(found("flansge"), [made["Flange"]])
        self.assertEqual((found("houzing"), found("gear+houzing")), ([made["Gear housing"]],) * 2)
        self.assertEqual(found("houzing+nothing"), [])
        self.assertEqual(found("ubergang"), [made["Übergang"]])
        self.assertEqual((found("xyzzy"), found("flx")), ([], []))
        boss("DELETE", f"/items/{made['Flange']}")
        self.assertEqual(found("flansge"), [])


if __name__ == "__main__":
    service.ON_POSTGRESQL = True
    service.main()
