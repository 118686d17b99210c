"""What fails around the service: it's killed, its database is locked, gone, full or newer, its contents are missing or damaged."""

import os
import pathlib
import re
import shutil
import signal
import time
import unittest

import service
from service import Service, ServiceTest, sha256

MIGRATIONS = pathlib.Path(__file__).resolve().parents[3] / "Services/Itemhub/Store/Migrations"
FAILING_CALLS = os.environ["QUILLET_FAILING_CALLS"]


class KilledTest(unittest.TestCase):
    def setUp(self):
        self.service = Service()
        self.addCleanup(self.service.close)
        self.service.admin("customer", "add", "acme")
        self.workspace = int(self.service.admin("workspace", "add", "acme", "Designs"))
        self.service.start()
        self.boss = self.service.member("acme", "boss", "admin")
        self.item = self.boss("POST", f"/workspaces/{self.workspace}/items", {"caption": "x"}).json["id"]
        self.attachment = self.boss("POST", f"/items/{self.item}/attachments", {"name": "a", "docType": "x"}).json["id"]
        self.service.stop()

    def save(self, client, data, made_from, key):
        """What a client does to save a version, from wherever it's broken off: all of it may be repeated."""
        if not self.upload:
            begun = client.begin(len(data), sha256=sha256(data))
            self.upload = begun.headers["location"].rsplit("/", 1)[1]
        told = client("HEAD", f"/uploads/{self.upload}", headers=service.TUS)
        # One that was taken, of which only the answer was lost, is there no longer.
        assert told.status in (200, 404), told
        offset = int(told.headers.get("upload-offset", len(data)))
        if offset < len(data):
            assert client.send(self.upload, offset, data[offset:]).status == 204
        made = client("POST", f"/attachments/{self.attachment}/versions", {"upload": self.upload, "madeFrom": made_from},
                      {"Idempotency-Key": key})
        assert made.status == 201, made
        return made.json["number"]

    def test_killed_at_any_call_a_save_is_repeated_and_nothing_is_lost_or_doubled(self):
        armed = self.service.folder / "armed"
        saved, call = 0, 0
        while True:
            call += 1
            data, self.upload = f"version {saved + 1}".encode() * 5000, None
            self.service.environment = {"LD_PRELOAD": FAILING_CALLS, "ITEMHUB_KILL_AT": str(call), "ITEMHUB_ARMED": str(armed)}
            armed.unlink(missing_ok=True)
            client = self.service.start().client(self.boss.token)
            client("GET", "/session")
            armed.touch()
            killed = False
            try:
                number = self.save(client, data, saved, f"save {saved}")
            except (OSError, AssertionError):
                self.service.process.wait(timeout=30)
                self.assertEqual(self.service.process.returncode, -signal.SIGKILL)
                self.service.process.stderr.close()
                killed = True
                self.service.environment = {}
                client = self.service.start().client(self.boss.token)
                number = self.save(client, data, saved, f"save {saved}")
            saved += 1
            armed.unlink()
            self.assertEqual(number, saved)
            self.assertEqual(client("GET", f"/attachments/{self.attachment}/versions/latest/content").body, data)
            self.service.stop()
            if not killed:
                break
        # Beginning the upload, its bytes, the content's link and folders, and two transactions: fewer would be no test.
        self.assertGreater(call, 10)
        self.assertIn(f"{saved} contents", self.service.admin("blobs", "check"))
        if not service.ON_POSTGRESQL:
            self.assertEqual(self.service.sql("PRAGMA integrity_check"), [("ok",)])
        self.assertEqual(self.service.sql("SELECT count(*) FROM version"), [(saved,)])


class DatabaseTest(ServiceTest):
    settings = {"database": {"patienceMs": 300}}

    def setUp(self):
        self.items = f"/workspaces/{self.workspace}/items"

    def test_a_locked_database_is_waited_for_and_then_told_of(self):
        with self.service.locked():
            refused = self.boss("POST", self.items, {"caption": "x"})
            self.assertEqual((refused.status, refused.json["code"], refused.headers["retry-after"]), (503, "busy", "1"))
            self.assertEqual(self.boss("GET", self.items).status, 200)
        self.assertEqual(self.boss("POST", self.items, {"caption": "x"}).status, 201)

    def test_what_was_sent_outlives_a_request_that_was_taken_back(self):
        attachment, data = self.attachment(b"first"), b"second" * 500
        upload = self.boss.begin(len(data)).headers["location"].rsplit("/", 1)[1]
        with self.service.locked():
            # All bytes are here, and the record doesn't say so yet; on the other database it does.
            self.assertEqual(self.boss.send(upload, 0, data).status, 204 if service.ON_POSTGRESQL else 503)
        make = lambda made_from, key: self.boss("POST", f"/attachments/{attachment}/versions", {"upload": upload, "madeFrom": made_from},
                                                {"Idempotency-Key": key})
        self.assertEqual(make(0, "outdated").json["code"], "outdated")
        self.assertEqual(make(1, "right").status, 201)
        self.assertEqual(self.boss("GET", f"/attachments/{attachment}/versions/2/content").body, data)
        self.assertEqual([path.name for path in (self.service.blobs / "uploads").iterdir()], [], "no file is left")

    @unittest.skipIf(service.ON_POSTGRESQL, "a server is another matter: see postgresql_test.py")
    def test_a_database_that_was_taken_away_gets_no_changes_that_would_be_lost(self):
        aside = self.service.database.with_suffix(".aside")
        self.service.database.rename(aside)
        try:
            self.assertEqual(self.boss("POST", self.items, {"caption": "x"}).json["code"], "no_database")
            self.assertEqual(self.boss("GET", "/health").status, 503)
            # Another connection makes no empty one in its place.
            self.assertEqual(self.service.client(self.boss.token)("POST", self.items, {"caption": "x"}).status, 503)
            self.assertFalse(self.service.database.exists())
        finally:
            aside.rename(self.service.database)
        self.assertEqual(self.boss("POST", self.items, {"caption": "x"}).status, 201)


class AgeTest(unittest.TestCase):
    def test_what_is_older_than_is_to_be_kept_goes_at_the_start_and_serials_go_on(self):
        kept = Service(keep={"eventDays": 30, "auditDays": 0})
        self.addCleanup(kept.close)
        kept.admin("customer", "add", "acme")
        workspace = int(kept.admin("workspace", "add", "acme", "Designs"))
        boss = kept.start().member("acme", "boss", "admin")
        for number in range(5):
            boss("POST", f"/workspaces/{workspace}/items", {"caption": f"item {number}"})
        kept.stop()

        def serials():
            client = kept.client(boss.token)
            for _ in range(100):  # What goes does so behind the start.
                found = [event["serial"] for event in client("GET", "/events?after=0").json["events"]]
                if found != before:
                    break
                time.sleep(0.1)
            return found

        before = [row[0] for row in kept.sql("SELECT serial FROM event ORDER BY serial")]
        audited = kept.sql("SELECT count(*) FROM audit")[0][0]
        day = 24 * 3600 * 1000
        kept.sql(f"UPDATE event SET created_at = created_at - {31 * day} WHERE serial < {before[2]}")
        kept.sql(f"UPDATE event SET created_at = created_at - {29 * day} WHERE serial >= {before[2]}")
        kept.sql("UPDATE audit SET created_at = 1")
        kept.start()
        self.assertEqual(serials(), before[2:])
        kept.stop()
        self.assertEqual(kept.sql("SELECT count(*) FROM audit")[0][0], audited, "for ever")
        kept.sql("UPDATE event SET created_at = 1")
        before = before[2:]
        kept.configure(keep={"auditDays": 1})
        kept.start()
        self.assertEqual(serials(), before[-1:])
        client = kept.client(boss.token)
        client("POST", f"/workspaces/{workspace}/items", {"caption": "one more"})
        self.assertGreater(client("GET", f"/events?after={before[-1]}").json["events"][0]["serial"], before[-1])
        self.assertLess(len(kept.admin("audit", 100).splitlines()), audited)


class UpgradeTest(ServiceTest):
    def test_a_database_of_the_layout_before_is_brought_up_with_all_that_it_has(self):
        made = [self.item(f"Item {number}") for number in (3, 1, 2)]
        attachment = self.attachment(b"kept", made[1])
        before = {each: self.boss("GET", f"/items/{each}").json for each in made}
        after = self.boss("GET", "/events?after=now").json["next"]
        self.service.stop()
        first = 6  # Of those that brought the layout of now.
        files = [file for file in sorted(MIGRATIONS.glob("*.sql")) if int(file.name[:4]) >= first]
        self.assertTrue(files)
        made_there = [words for file in files for words in re.findall(r"CREATE (TABLE|INDEX|VIEW) (\w+)", file.read_text())]
        # What stands on others goes before them.
        for kind, name in [("INDEX", "item_similar"), *sorted(made_there, reverse=True)]:
            self.service.sql(f"DROP {kind} IF EXISTS {name}" + (" CASCADE" if service.ON_POSTGRESQL else ""))
        self.service.sql(f"DELETE FROM schema_version WHERE number >= {first}")
        boss = self.service.start().client(self.boss.token)
        self.assertEqual({each: boss("GET", f"/items/{each}").json for each in made}, before)
        listed = boss("GET", f"/workspaces/{self.workspace}/items?order=name").json["items"]
        self.assertEqual([each["id"] for each in listed], [made[1], made[2], made[0]])
        self.assertEqual(boss("GET", f"/attachments/{attachment}/versions/1/content").body, b"kept")
        boss("PUT", f"/favourites/{made[0]}")
        self.assertEqual([each["serial"] for each in boss("GET", f"/events?after={after}").json["events"]], [after + 1])
        self.assertEqual(len(self.service.sql("SELECT number FROM schema_version")), self.service.sql("SELECT max(number) FROM schema_version")[0][0])


class OtherProcessTest(ServiceTest):
    def test_what_another_process_changes_is_seen_by_the_next_request(self):
        item = self.item("before")
        reader = self.service.member("acme", "reader", "reader")

        def caption():
            answer = reader("GET", f"/items/{item}")
            return answer.json["caption"] if answer.status == 200 else answer.status

        self.assertEqual([caption(), caption()], ["before", "before"])
        self.service.sql(f"UPDATE item SET caption = 'after' WHERE id = {item}")
        self.assertEqual(caption(), "after")
        self.service.admin("member", "set", "acme", "reader", "all", "none")
        self.assertEqual(caption(), 404)
        self.service.admin("member", "set", "acme", "reader", "all", "reader")
        self.assertEqual(caption(), "after")
        self.assertEqual(self.boss("GET", f"/items/{item}").status, 200)
        self.assertEqual(self.boss("DELETE", f"/items/{item}").status, 204)
        self.assertEqual(caption(), 404)
        self.service.admin("account", "disable", "acme", "reader")
        self.assertEqual(caption(), 401)


class StartTest(unittest.TestCase):
    def setUp(self):
        self.service = Service()
        self.addCleanup(self.service.close)

    def refused(self):
        self.service.start()
        self.assertIsNone(self.service.port)
        code = self.service.process.returncode
        self.service.process.stderr.close()
        return code

    def message(self, *words):
        result = self.service.admin(*words, check=False)
        self.assertEqual(result.returncode, 1, result)
        return result.stderr

    def test_a_signal_that_comes_while_it_starts_ends_it(self):
        def send():
            # Held back until the service waits for it, which is while its listener begins.
            signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGTERM])
            os.kill(os.getpid(), signal.SIGTERM)

        for _ in range(30):
            self.service.process = self.service.run(preexec_fn=send)
            self.assertEqual(self.service.process.wait(timeout=30), 0)
            self.service.process.stderr.close()

    def test_a_newer_database_and_what_is_none_are_left_alone(self):
        self.service.admin("customer", "add", "acme")
        self.service.sql("INSERT INTO schema_version VALUES (999, 0)")
        before = self.service.stored()
        self.assertEqual(self.refused(), 1)
        self.assertIn("version 999", self.message("customer", "add", "other"))
        self.assertEqual(self.service.stored(), before)
        if service.ON_POSTGRESQL:
            return
        self.service.database.write_bytes(b"This is a letter and no database." * 100)
        for path in self.service.data.glob("items.sqlite-*"):
            path.unlink()
        self.assertEqual(self.refused(), 1)
        self.assertTrue(self.service.database.read_bytes().startswith(b"This is a letter"))

    def test_a_configuration_that_is_wrong_is_refused_by_name(self):
        for text, word in [("{", "byte"), ("[]", "cannot be used"), ('{"blobs": "/x"}', "database.name"), ('{"colour": 1}', "colour"),
                           ('{"server": {"port": "x"}}', "server.port"), ('{"database": {"driver": "paper"}}', "database.driver")]:
            self.service.config.write_text(text)
            self.assertIn(word, self.message("customer", "add", "x"))
            self.assertEqual(self.refused(), 1)
        self.service.config.unlink()
        self.assertEqual(self.refused(), 1)

    def test_the_administrator_is_told_what_is_wrong_with_a_command(self):
        self.service.admin("customer", "add", "acme")
        for words in [("account", "password", "acme", "nobody"), ("workspace", "add", "none", "x"), ("customer", "add", "a\u202eb"),
                      ("token", "add", "acme", "nobody", "owner", 1), ("audit", "x")]:
            self.assertTrue(self.message(*words))
        self.assertEqual(self.service.admin("account", "add", check=False).returncode, 2)
        short = self.service.admin("account", "add", "acme", "x", password="short", check=False)
        self.assertIn("10 characters", short.stderr)


class FullTest(unittest.TestCase):
    def test_on_a_full_disk_what_was_there_stays_and_later_all_goes_on(self):
        each = Service()
        self.addCleanup(each.close)
        full = each.folder / "full"
        each.admin("customer", "add", "acme")
        workspace = each.admin("workspace", "add", "acme", "Designs")
        each.environment = {"LD_PRELOAD": FAILING_CALLS, "ITEMHUB_DISK_FULL": str(full)}
        each.start()
        boss = each.member("acme", "boss", "admin")
        upload = boss.begin(100_000).headers["location"].rsplit("/", 1)[1]
        full.touch()
        if not service.ON_POSTGRESQL:  # Whose disk is another one.
            self.assertEqual(boss("POST", f"/workspaces/{workspace}/items", {"caption": "x"}).json["code"], "full")
        self.assertEqual(boss.send(upload, 0, b"x" * 100_000).json["code"], "full")
        self.assertEqual(boss("GET", f"/workspaces/{workspace}/items").json["items"], [])
        full.unlink()
        self.assertEqual(boss("POST", f"/workspaces/{workspace}/items", {"caption": "x"}).status, 201)
        offset = boss.offset(upload)
        self.assertEqual(boss.send(upload, offset, b"x" * (100_000 - offset)).status, 204)


class ContentsTest(ServiceTest):
    def file_of(self, data):
        return self.service.blobs / sha256(data)[:2] / sha256(data)

    def test_a_missing_or_damaged_content_is_told_never_handed_out_and_healed_by_a_sound_one(self):
        sound, lost, short, changed = [name.encode() * 100 for name in ("sound", "lost", "short", "changed")]
        paths = {data: f"/attachments/{self.attachment(data)}/versions/1/content" for data in (sound, lost, short, changed)}
        self.assertIn("contents are as they should be", self.service.admin("blobs", "check"))
        self.file_of(lost).unlink()
        self.file_of(short).write_bytes(short[:-1])
        self.file_of(changed).write_bytes(changed[:-1] + b"?")
        codes = {data: self.boss("GET", path) for data, path in paths.items()}
        self.assertEqual(codes[sound].body, sound)
        self.assertEqual((codes[lost].status, codes[lost].json["code"]), (500, "content_missing"))
        self.assertEqual((codes[short].status, codes[short].json["code"]), (500, "content_damaged"))
        # Of the right length, only the hash can tell, which the client has and the check compares.
        self.assertNotEqual(sha256(codes[changed].body), sha256(changed))
        report = self.service.admin("blobs", "check", check=False)
        self.assertEqual(report.returncode, 1)
        for data, fault in [(lost, "is missing"), (short, "is damaged"), (changed, "is damaged")]:
            self.assertIn(f"{sha256(data)} {fault}", report.stdout)
        self.assertNotIn(sha256(sound), report.stdout)
        for data in (lost, short):
            self.boss.upload(data)
            self.assertEqual(self.boss("GET", paths[data]).body, data)

    def test_a_backup_has_all_and_only_forgotten_contents_are_removed(self):
        data, orphan = b"kept" * 100, b"forgotten" * 100
        attachment = self.attachment(data)
        self.boss.upload(orphan)
        self.service.sql("DELETE FROM upload")
        for path in (self.file_of(data), self.file_of(orphan)):
            os.utime(path, (0, 0))
        self.service.admin("blobs", "clean")
        self.assertEqual((self.file_of(data).exists(), self.file_of(orphan).exists()), (True, False))
        folder = self.service.data / "backup"
        for _ in range(2):
            self.service.admin("backup", folder)
        restored = Service()
        self.addCleanup(restored.close)
        restored.restore(folder / "database")
        shutil.copytree(folder / "blobs", restored.blobs)
        shutil.copy(folder / "service.key", restored.data)
        for path in [restored.data, *restored.data.rglob("*")]:
            path.chmod(0o777 if path.is_dir() else 0o666)
        restored.start()
        client = restored.client(self.boss.token)
        self.assertEqual(client("GET", f"/attachments/{attachment}/versions/1/content").body, data)


if __name__ == "__main__":
    service.main()
