"""Contents in a store of objects, a real one, behind the same service: kept, fetched, lost, damaged, away."""

import os
import pathlib
import shutil
import sys
import unittest

import service
from service import ServiceTest, sha256

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "Support/Servers"))
import object_store  # noqa: E402


class ObjectsTest(ServiceTest):
    @classmethod
    def setUpClass(cls):
        # Its packages bring fifty others along, so no list asks for them.
        if absent := object_store.missing():
            raise unittest.SkipTest(f"NOTICE: not installed: {absent}")
        cls.store = object_store.ObjectStore(service.PLAIN, service.NOBODY if service.PLAIN else None)
        cls.addClassCleanup(cls.store.__exit__)
        cls.store.__enter__()
        cls.settings = {"objects": {"address": cls.store.address, "bucket": object_store.BUCKET, "keyId": object_store.KEY_ID,
                                    "secret": object_store.SECRET, "nearBytes": 4096}}
        super().setUpClass()

    def forget(self):
        """What lies on this machine goes."""
        for path in self.service.blobs.glob("??/*"):
            path.unlink()

    def content(self, attachment, **headers):
        return self.boss("GET", f"/attachments/{attachment}/versions/1/content", headers={name.replace("_", "-"): value for name, value in headers.items()})

    def near(self):
        return sum(path.stat().st_size for path in self.service.blobs.glob("??/*"))

    def test_contents_are_objects_and_come_back_byte_for_byte(self):
        for data in (b"", b"x", os.urandom(3000), os.urandom(9 << 20)):
            attachment = self.attachment(data)
            self.assertEqual(self.store.ask("GET", sha256(data)), data)
            self.assertLessEqual(self.near(), 4096, "only so much is kept here")
            self.forget()
            self.assertEqual(self.content(attachment).body, data)
            if len(data) > 1000:
                self.assertEqual(self.content(attachment, Range="bytes=100-199").body, data[100:200])
        self.assertEqual(list(self.service.blobs.glob("fetched-*")), [])

    def test_what_is_lost_or_damaged_there_is_told_and_healed_by_the_same_content(self):
        lost, damaged = os.urandom(2000), os.urandom(2000)
        attachments = [self.attachment(lost), self.attachment(damaged)]
        self.store.ask("DELETE", sha256(lost))
        self.store.ask("PUT", sha256(damaged), "--data-binary", "something else")
        self.forget()
        self.assertEqual(self.content(attachments[0]).json["code"], "content_missing")
        self.assertEqual(self.content(attachments[1]).json["code"], "content_damaged")
        told = self.service.admin("blobs", "check", check=False)
        self.assertIn(f"{sha256(lost)} is missing", told.stdout)
        self.assertIn(f"{sha256(damaged)} is damaged", told.stdout)
        for data, attachment in zip((lost, damaged), attachments):
            self.boss.upload(data)
            self.forget()
            self.assertEqual(self.content(attachment).body, data)

    def test_while_the_store_is_away_nothing_is_lost_and_then_all_goes_on(self):
        data = os.urandom(5000)
        before = self.attachment(os.urandom(6000))
        self.forget()
        begun = self.boss.begin(len(data))
        upload = begun.headers["location"].rsplit("/", 1)[1]
        self.store.end_gateway()
        try:
            refused = self.boss.send(upload, 0, data)
            self.assertEqual((refused.status, refused.json["code"]), (503, "no_contents"))
            self.assertEqual(self.content(before).json["code"], "no_contents")
            self.assertEqual(self.boss("GET", "/workspaces").status, 200)
        finally:
            self.store.begin_gateway()
        self.assertEqual(self.boss.offset(upload), len(data), "what came is here")
        self.assertEqual(self.boss.send(upload, len(data), b"").status, 204)
        made = self.boss("POST", f"/items/{self.item()}/attachments", {"name": "a", "docType": "x", "upload": upload})
        self.assertEqual(made.status, 201, made)
        self.assertEqual(self.content(made.json["id"]).body, data)
        self.assertEqual(self.content(before).status, 200)

    def test_a_backup_has_all_objects_and_only_forgotten_ones_go(self):
        kept, forgotten = os.urandom(1500), os.urandom(1500)
        self.attachment(kept)
        self.boss.upload(forgotten)
        self.forget()
        folder = self.service.folder / "data/backup"
        self.service.admin("backup", folder)
        for data in (kept, forgotten):
            self.assertEqual((folder / "blobs" / sha256(data)[:2] / sha256(data)).read_bytes(), data)
        shutil.rmtree(folder)
        self.assertIn("0 contents were removed", self.service.admin("blobs", "clean"), "they are younger than a day")
        self.assertIsNotNone(self.store.ask("GET", sha256(forgotten)))

    def test_whom_the_store_does_not_know_is_refused_with_its_words(self):
        wrong = service.Service(objects={**self.settings["objects"], "secret": "another"})
        self.addCleanup(wrong.close)
        wrong.admin("customer", "add", "acme")
        wrong.admin("workspace", "add", "acme", "Designs")
        wrong.start()
        boss = wrong.member("acme", "boss", "admin")
        begun = boss.begin(3)
        refused = boss.send(begun.headers["location"].rsplit("/", 1)[1], 0, b"abc")
        self.assertEqual((refused.status, refused.json["code"]), (503, "no_contents"))
        log = wrong.log()
        self.assertIn("SignatureDoesNotMatch", log)
        self.assertNotIn("another", log)


if __name__ == "__main__":
    service.main()
