"""The service for one user of the machine, as a program starts it for itself."""

import json
import os
import pathlib
import select
import shutil
import signal
import subprocess
import tempfile
import unittest

import service
from service import Client


class LocalTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="itemhub-"))
        self.addCleanup(shutil.rmtree, self.folder)
        if service.PLAIN:
            os.chown(self.folder, service.NOBODY, service.NOBODY)

    def start(self, *words, **more):
        process = subprocess.Popen([*service.PLAIN, service.PROGRAM, "--local", self.folder / "profile", *words],
                                   stdout=subprocess.PIPE, **more)
        self.addCleanup(lambda: (process.kill(), process.wait(), process.stdout.close()))
        return process

    def client(self, line):
        told = json.loads(line)
        self.assertTrue(told["url"].startswith("http://127.0.0.1:"))
        return Client(int(told["url"].rsplit(":", 1)[1]), told["token"], told["customer"])

    def test_what_one_run_kept_the_next_one_has_and_two_at_once_share_it(self):
        first, second = self.start(), self.start()
        one, two = self.client(first.stdout.readline()), self.client(second.stdout.readline())
        workspace = one("GET", "/workspaces").json["workspaces"][0]
        self.assertEqual(workspace["role"], "admin")
        item = one("POST", f"/workspaces/{workspace['id']}/items", {"caption": "Mine"}).json["id"]
        self.assertEqual(two("GET", f"/items/{item}").json["caption"], "Mine")
        # What another process notes is heard, too.
        after = two("GET", "/events").json["next"]
        two.connection.request("GET", f"/events?after={after}&wait=20", headers={"Authorization": f"Bearer {two.token}"})
        one("PUT", f"/favourites/{item}")
        self.assertIn(b"favourite.added", two.connection.getresponse().read())
        for each in (first, second):
            each.send_signal(signal.SIGTERM)
            self.assertEqual(each.wait(timeout=20), 0)
        third = self.client(self.start().stdout.readline())
        self.assertEqual(third("GET", "/search?q=mine").json["items"][0]["id"], item)
        # Tokens end with their runs, and nobody else may look into the folder.
        third.token = one.token
        self.assertEqual(third("GET", "/session").status, 401)
        self.assertEqual((self.folder / "profile").stat().st_mode & 0o077, 0)

    def test_it_ends_with_whoever_started_it_however_that_ends(self):
        process = self.start()
        client = self.client(process.stdout.readline())
        self.assertEqual(client("GET", "/health").status, 200)
        process.stdout.close()
        self.assertEqual(process.wait(timeout=20), 0)

        # A parent that is killed closes its end, too.
        program = ("import subprocess, sys, time; p = subprocess.Popen(sys.argv[1:], stdout=subprocess.PIPE);"
                   "print(p.pid, p.stdout.readline().decode(), flush=True); time.sleep(60)")
        parent = subprocess.Popen(["python3", "-c", program, *service.PLAIN, service.PROGRAM, "--local", self.folder / "profile"],
                                  stdout=subprocess.PIPE)
        child = int(parent.stdout.readline().split()[0])
        descriptor = os.pidfd_open(child)
        parent.kill()
        parent.wait()
        parent.stdout.close()
        self.assertTrue(select.select([descriptor], [], [], 20)[0], "the service goes on without its parent")
        os.close(descriptor)

    def test_address_and_token_go_to_the_pipe_that_is_named(self):
        reader, writer = os.pipe()
        process = self.start("--pipe", str(writer), pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as pipe:
            self.assertEqual(self.client(pipe.readline())("GET", "/session").json["account"], "local")
        self.assertEqual(process.wait(timeout=20), 0)
        self.assertEqual(process.stdout.read(), b"")

    def test_a_folder_that_cannot_be_is_told_of(self):
        (self.folder / "profile").write_text("a file")
        process = self.start(stderr=subprocess.PIPE)
        self.assertEqual(process.wait(timeout=20), 1)
        self.assertIn(b"profile", process.stderr.read())
        process.stderr.close()


if __name__ == "__main__":
    service.main()
