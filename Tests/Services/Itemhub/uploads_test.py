"""Uploads that are cut, repeated, reordered, wrong, too large or too old: what came is kept, and nothing wrong is ever taken."""

import base64
import hashlib
import random
import socket
import threading
import unittest

import service
from service import TUS, ServiceTest, sha256

KIB = 1024


class UploadsTest(ServiceTest):
    settings = {"limits": {"requestsPerSecond": 0, "largestUpload": 4 << 20, "announcedUploads": 64 << 20}}

    def begin(self, length, **metadata):
        return self.boss.begin(length, **metadata).headers["location"].rsplit("/", 1)[1]

    def content(self, upload):
        made = self.boss("POST", f"/items/{self.item()}/attachments", {"name": "a", "docType": "x", "upload": upload})
        self.assertEqual(made.status, 201, made)
        return self.boss("GET", f"/attachments/{made.json['id']}/versions/1/content").body

    def head(self, upload, offset, length, headers=""):
        """A connection on which a request has begun that announces so many bytes."""
        raw = socket.create_connection(("127.0.0.1", self.service.port), timeout=60)
        raw.sendall((f"PATCH /uploads/{upload} HTTP/1.1\r\nHost: x\r\nTus-Resumable: 1.0.0\r\nUpload-Offset: {offset}\r\n"
                     f"Authorization: Bearer {self.boss.token}\r\nContent-Type: application/offset+octet-stream\r\n"
                     f"{headers}Content-Length: {length}\r\n\r\n").encode())
        return raw

    def cut(self, upload, offset, data, sent, headers=""):
        """A request that ends before what it announced, as a connection that breaks does."""
        with self.head(upload, offset, len(data), headers) as raw:
            raw.sendall(data[:sent])
            raw.shutdown(socket.SHUT_WR)
            while raw.recv(KIB):
                pass

    def test_an_upload_that_breaks_at_every_kib_goes_on_from_there(self):
        data = random.Random(1).randbytes(64 * KIB)
        upload = self.begin(len(data), sha256=sha256(data))
        for kib in range(64):
            offset = self.boss.offset(upload)
            self.assertEqual(offset, kib * KIB)
            self.cut(upload, offset, data[offset:], KIB if kib < 63 else KIB - 1)
        self.assertEqual(self.boss.offset(upload), len(data) - 1)
        self.assertEqual(self.boss.send(upload, len(data) - 1, data[-1:]).status, 204)
        self.assertEqual(self.content(upload), data)

    def test_who_was_cut_off_without_a_word_goes_on_at_once(self):
        # A connection that nobody ends keeps the service waiting for the rest, as when a machine loses its network.
        data = random.Random(4).randbytes(64 * KIB)
        upload = self.begin(len(data), sha256=sha256(data))
        with self.head(upload, 0, len(data)) as raw:
            raw.sendall(data[:10 * KIB])
            while not (offset := self.boss.offset(upload)):
                pass  # It hasn't begun yet.
            self.assertEqual(self.boss.send(upload, offset, data[offset:]).status, 204)
            self.assertIn(b" 423 ", raw.recv(KIB))
        self.assertEqual(self.content(upload), data)

    def test_pieces_come_in_their_order_or_not_at_all(self):
        data = random.Random(2).randbytes(30 * KIB)
        first, second, third = data[:10 * KIB], data[10 * KIB:20 * KIB], data[20 * KIB:]
        upload = self.begin(len(data))
        early = self.boss.send(upload, 10 * KIB, second)
        self.assertEqual((early.status, early.headers["upload-offset"]), (409, "0"))
        self.assertEqual(self.boss.send(upload, 0, first).status, 204)
        again = self.boss.send(upload, 0, first)
        self.assertEqual((again.status, again.headers["upload-offset"]), (409, str(10 * KIB)))
        self.assertEqual(self.boss.send(upload, 10 * KIB, second + third + b"!").status, 413)
        self.assertIn(self.boss.offset(upload), (10 * KIB, 30 * KIB))
        offset = self.boss.offset(upload)
        self.assertEqual(self.boss.send(upload, offset, data[offset:]).headers["upload-offset"], str(len(data)))
        # The last answer may have been lost: it's asked for again.
        self.assertEqual(self.boss.send(upload, len(data), b"").status, 204)
        self.assertEqual(self.content(upload), data)
        self.assertEqual(self.boss("HEAD", f"/uploads/{upload}", headers=TUS).status, 404)

    def test_a_wrong_hash_is_not_taken_and_the_right_one_is_afterwards(self):
        data = b"designed" * 1000
        checksum = lambda name, text: f"{name} {base64.b64encode(hashlib.new(name, text).digest()).decode()}"
        upload = self.begin(len(data), sha256=sha256(data))
        half = data[:4000]
        for name in ("sha1", "sha256"):
            wrong = self.boss.send(upload, 0, half, Upload_Checksum=checksum(name, half + b"?"))
            self.assertEqual((wrong.status, self.boss.offset(upload)), (460, 0))
        self.cut(upload, 0, half, 2000, f"Upload-Checksum: {checksum('sha1', half)}\r\n")
        self.assertEqual(self.boss.offset(upload), 0)
        self.assertEqual(self.boss.send(upload, 0, half, Upload_Checksum=checksum("sha1", half)).status, 204)
        self.assertEqual(self.boss.send(upload, 4000, b"x" * 4000).status, 460)
        self.assertEqual(self.boss.offset(upload), 0)
        self.assertEqual(self.boss.send(upload, 0, data).status, 204)
        self.assertEqual(self.content(upload), data)
        for bad in ("md5 AAAA", "sha1", "nonsense"):
            other = self.begin(1)
            self.assertIn(self.boss.send(other, 0, b"x", Upload_Checksum=bad).status, (400, 460))

    def test_limits_and_protocol_are_told_before_bytes_are_taken(self):
        self.assertEqual(self.boss.begin((4 << 20) + 1).status, 413)
        self.assertEqual([self.boss.begin(4 << 20).status for _ in range(17)][-1], 413)
        self.assertEqual(self.boss("POST", "/uploads", headers={"Upload-Length": "1"}).headers["tus-version"], "1.0.0")
        for length in ("", "-1", "x", "1e9", "99999999999999999999"):
            self.assertEqual(self.boss("POST", "/uploads", headers={**TUS, "Upload-Length": length}).status, 400)
        self.assertEqual(self.boss.begin(1, sha256="zz").status, 400)
        second = self.service.member("acme", "other", "writer")
        upload = second.begin(5).headers["location"].rsplit("/", 1)[1]
        self.assertEqual(self.boss.send(upload, 0, b"mine!").status, 404)
        self.assertEqual(second.send(upload, 0, b"mine!").status, 204)
        item = self.item()
        for name in (upload, "none", "../items.sqlite", "x" * 200):
            self.assertEqual(self.boss("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": name}).status, 404)
        self.assertEqual(self.boss("GET", f"/items/{item}/attachments").json["attachments"], [])
        half = second.begin(5).headers["location"].rsplit("/", 1)[1]
        second.send(half, 0, b"ha")
        early = second("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": half})
        self.assertEqual(early.json["code"], "upload_incomplete")
        empty = second.upload(b"")
        self.assertEqual(second("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": empty}).status, 201)

    def test_what_has_expired_is_gone_and_its_file_too(self):
        writer = self.service.member("acme", "late", "writer")
        upload = writer.begin(5).headers["location"].rsplit("/", 1)[1]
        file = self.service.blobs / "uploads" / upload
        self.assertTrue(file.exists())
        self.service.sql(f"UPDATE upload SET expires_at = 1 WHERE id = '{upload}'")
        self.assertEqual(writer.send(upload, 0, b"xxxxx").status, 410)
        self.assertEqual(writer.begin(5).status, 201)
        self.assertFalse(file.exists())
        self.assertEqual(writer.send(upload, 0, b"xxxxx").status, 404)

    def test_two_requests_never_write_the_same_upload(self):
        writer = self.service.member("acme", "twice", "writer")
        data = random.Random(3).randbytes(2 << 20)
        upload = writer.begin(len(data)).headers["location"].rsplit("/", 1)[1]
        statuses = []

        def send():
            client = self.service.client(writer.token)
            try:
                statuses.append(client.send(upload, 0, data).status)
            except OSError:
                statuses.append(None)  # refused while it was still sending

        threads = [threading.Thread(target=send) for _ in range(4)]
        for each in threads:
            each.start()
        for each in threads:
            each.join()
        # One that is slow on a busy machine may have been overtaken by one that comes from the beginning, and is refused.
        self.assertLessEqual(statuses.count(204), 1, statuses)
        self.assertLessEqual({s for s in statuses if s}, {204, 409, 423})
        offset = writer.offset(upload)
        self.assertEqual(writer.send(upload, offset, data[offset:]).status, 204)
        made = writer("POST", f"/items/{self.item()}/attachments", {"name": "a", "docType": "x", "upload": upload}).json
        self.assertEqual(writer("GET", f"/attachments/{made['id']}/versions/1").json["sha256"], sha256(data))


if __name__ == "__main__":
    service.main()
