"""The recipes for running the service for a team, as they stand in the documentation: two processes behind nginx and Apache with TLS, and the
unit for systemd."""

import http.client
import json
import os
import pathlib
import re
import shutil
import signal
import socket
import ssl
import subprocess
import tempfile
import time
import unittest

import service
from ports import free_port
from service import PASSWORD, Service, sha256

RECIPES = pathlib.Path(__file__).resolve().parents[3] / "Docs/itemhub"
NAME = "items.example.org"
MODULES = pathlib.Path("/usr/lib/apache2/modules")


def needed(*files):
    absent = ", ".join(str(file) for file in files if not pathlib.Path(file).exists())
    if absent and os.environ.get("QUILLET_SERVERS") == "required":
        raise AssertionError(f"not installed: {absent}")
    if absent:
        raise unittest.SkipTest(f"NOTICE: not installed: {absent}")


class SafeClient(service.Client):
    """By https, to the name that the certificate has."""

    def __init__(self, port, token, authority):
        super().__init__(port, token)
        context = ssl.create_default_context(cafile=str(authority))
        self.connection = http.client.HTTPSConnection(NAME, port, timeout=60, context=context)
        self.connection._create_connection = lambda _, *more: socket.create_connection(("127.0.0.1", port), *more)


class Behind:
    """What holds of both proxies; the case beside it starts one."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="proxy-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.folder.chmod(0o777)
        self.certificate, self.key = self.folder / "certificate.pem", self.folder / "key.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj",
                        f"/CN={NAME}", "-addext", f"subjectAltName=DNS:{NAME}", "-keyout", self.key, "-out", self.certificate],
                       check=True, stderr=subprocess.DEVNULL)
        self.key.chmod(0o644)
        self.port = free_port()
        self.first = Service(server={"port": 0, "url": f"https://{NAME}", "behindProxy": True})
        self.addCleanup(self.first.close)
        self.first.admin("customer", "add", "acme")
        self.workspace = self.first.admin("workspace", "add", "acme", "Designs")
        self.first.start()
        self.second = self.first.beside()
        self.addCleanup(self.second.close)
        token = self.first.member("acme", "boss", "admin").token
        self.proxy = self.start()
        self.addCleanup(self.end)
        self.boss = self.client(token)
        self.answers()

    def client(self, token=None):
        return SafeClient(self.port, token, self.certificate)

    def recipe(self, name):
        """The recipe with this machine's ports and files."""
        text = (RECIPES / name).read_text()
        for old, new in {"127.0.0.1:8081": f"127.0.0.1:{self.first.port}", "127.0.0.1:8082": f"127.0.0.1:{self.second.port}",
                         "listen 443": f"listen 127.0.0.1:{self.port}", "*:443": f"127.0.0.1:{self.port}",
                         f"/etc/ssl/certs/{NAME}.pem": str(self.certificate), f"/etc/ssl/private/{NAME}.key": str(self.key)}.items():
            text = text.replace(old, new)
        file = self.folder / name
        file.write_text(text)
        return file

    def launch(self, *words):
        log = open(self.folder / "said", "ab")
        self.addCleanup(log.close)
        return subprocess.Popen([*service.PLAIN, *map(str, words)], cwd=self.folder, stdout=log, stderr=log)

    def end(self):
        self.proxy.terminate()
        self.proxy.wait(timeout=30)

    def answers(self):
        for _ in range(100):
            try:
                if self.boss("GET", "/health").status == 200:
                    return
            except OSError:
                self.boss.connection.close()
            time.sleep(0.1)
        self.fail("".join(file.read_text()[-2000:] for file in map(self.folder.joinpath, ("said", "log")) if file.exists()))

    def half(self, upload, data):
        """A connection by which two of three parts of an upload have gone."""
        half = self.client(self.boss.token).connection
        half.putrequest("PATCH", f"/uploads/{upload}")
        for name, value in {**service.TUS, "Upload-Offset": "0", "Content-Type": "application/offset+octet-stream", "Content-Length": str(len(data)),
                            "Authorization": f"Bearer {self.boss.token}"}.items():
            half.putheader(name, value)
        half.endheaders(data[:len(data) * 2 // 3])
        return half

    def test_all_goes_through_at_once_and_as_it_was_sent(self):
        items = f"/workspaces/{self.workspace}/items"
        item = self.boss("POST", items, {"caption": "Through"}).json["id"]
        # An upload that is cut goes on where it was, for which its bytes must not be kept back.
        data = os.urandom(3 << 20)
        upload = self.boss.begin(len(data)).headers["location"].rsplit("/", 1)[1]
        half = self.half(upload, data)
        time.sleep(1)
        half.close()
        offset = self.boss.offset(upload)
        self.assertGreater(offset, 0)
        self.assertEqual(self.boss.send(upload, offset, data[offset:]).status, 204)
        made = self.boss("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": upload}).json
        self.assertTrue(made["uri"].startswith(f"https://{NAME}/attachments/"))
        content = self.boss("GET", f"/attachments/{made['id']}/versions/1/content")
        self.assertEqual(sha256(content.body), sha256(data))
        part = self.boss("GET", f"/attachments/{made['id']}/versions/1/content", headers={"Range": "bytes=5-9"})
        self.assertEqual((part.status, part.body), (206, data[5:10]))

        # A stream shows each event when it happens, though it has no end.
        stream = self.client(self.boss.token).connection
        stream.request("GET", "/events?after=now", headers={"Accept": "text/event-stream", "Authorization": f"Bearer {self.boss.token}"})
        told = stream.getresponse()
        self.assertEqual((told.status, told.readline()), (200, b":\n"))
        for _ in range(3):
            self.boss("POST", f"/items/{item}/comments", {"body": "Now"})
            lines = []
            while not lines or lines[-1].startswith(b":") or lines[-1] == b"\n":
                lines.append(told.readline())
            self.assertTrue(lines[-1].startswith(b"id: "), lines)
            while told.readline().strip():
                pass
        stream.close()

        page = self.boss("GET", "/dashboard")
        self.assertIn("frame-ancestors 'none'", page.headers["content-security-policy"])
        typed = f"customer=acme&account=boss&password={PASSWORD.replace(' ', '+')}"
        signed = self.client()("POST", "/dashboard", body=typed, headers={"Content-Type": "application/x-www-form-urlencoded"})
        self.assertTrue(signed.headers["set-cookie"].startswith("__Host-itemhub="))
        # Who says that he is somewhere else isn't believed.
        self.client()("POST", "/tokens?customer=acme", {"account": "boss", "password": "wrong"}, {"X-Forwarded-For": "8.8.8.8"})
        reader = self.client(self.first.admin("token", "add", "acme", "boss", "reader", 1))
        self.assertEqual(reader("POST", items, {"caption": "x"}, {"X-Forwarded-For": "8.8.8.8"}).status, 403)
        self.assertIn("\t127.0.0.1\t", self.first.admin("audit", 2))

    def asked(self, *words):
        """As browsers and programs ask: again, where a connection that was kept turns out to be closed."""
        try:
            return self.boss(*words)
        except http.client.RemoteDisconnected:
            return self.boss(*words)

    def test_one_process_may_go_and_come_again(self):
        items = f"/workspaces/{self.workspace}/items"
        for each in (self.second, self.first):
            each.stop(signal.SIGKILL)
            self.assertEqual([self.asked("GET", items).status for _ in range(20)], [200] * 20)
            for number in range(10):
                # As long as there is no answer of the service, the same request is made again.
                for _ in range(20):
                    made = self.asked("POST", items, {"caption": "x"}, {"Idempotency-Key": f"{each.port} {number}"})
                    if made.status == 201:
                        break
                self.assertEqual(made.status, 201)
            each.start(port=each.port)
            if each is self.second:
                time.sleep(11)  # Until the proxy tries it again.
        self.assertEqual(len(self.boss("GET", f"{items}?limit=500").json["items"]), 20)


class NginxTest(Behind, unittest.TestCase):
    def start(self):
        needed("/usr/sbin/nginx")
        temporary = "".join(f"{kind}_temp_path {self.folder}/{kind};\n" for kind in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        main = self.folder / "main.conf"
        main.write_text(f"daemon off;\npid {self.folder}/pid;\nerror_log {self.folder}/log;\nevents {{}}\n"
                        f"http {{\naccess_log off;\n{temporary}include {self.recipe('nginx.conf')};\n}}\n")
        return self.launch("/usr/sbin/nginx", "-e", self.folder / "log", "-c", main)

    def test_a_proxy_that_buffers_loses_nothing(self):
        file = self.folder / "nginx.conf"
        text = file.read_text()
        file.write_text(text.replace("buffering off", "buffering on"))
        self.assertNotEqual(file.read_text(), text)
        self.end()
        self.proxy = self.launch("/usr/sbin/nginx", "-e", self.folder / "log", "-c", self.folder / "main.conf")
        self.boss.connection.close()
        self.answers()
        item = self.boss("POST", f"/workspaces/{self.workspace}/items", {"caption": "Through"}).json["id"]
        # What is cut never reaches the service, so that it begins anew.
        data = os.urandom(3 << 20)
        upload = self.boss.begin(len(data)).headers["location"].rsplit("/", 1)[1]
        half = self.half(upload, data)
        time.sleep(1)
        half.close()
        self.assertEqual(self.boss.offset(upload), 0)
        self.assertEqual(self.boss.send(upload, 0, data).status, 204)
        made = self.boss("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": upload}).json
        content = self.boss("GET", f"/attachments/{made['id']}/versions/1/content")
        self.assertEqual(sha256(content.body), sha256(data))
        # As the program listens: each answer ends, so that nothing is kept back.
        serial = self.boss("GET", "/events?after=0").json["next"]
        listener = self.client(self.boss.token).connection
        listener.request("GET", f"/events?after={serial}&wait=30", headers={"Authorization": f"Bearer {self.boss.token}"})
        self.boss("POST", f"/items/{item}/comments", {"body": "Now"})
        told = json.loads(listener.getresponse().read())
        listener.close()
        self.assertEqual([event["kind"] for event in told["events"]], ["comment.added"])


class ApacheTest(Behind, unittest.TestCase):
    def start(self):
        needed("/usr/sbin/apache2", MODULES / "mod_proxy_balancer.so")
        recipe = self.recipe("apache.conf")
        modules = ["mpm_event", "authz_core", "slotmem_shm", "socache_shmcb"] + re.search("a2enmod (.*)", recipe.read_text()).group(1).split()
        main = self.folder / "main.conf"
        main.write_text("".join(f"LoadModule {name}_module {MODULES}/mod_{name}.so\n" for name in modules) +
                        f"ServerRoot {self.folder}\nServerName localhost\nPidFile {self.folder}/pid\nErrorLog {self.folder}/log\n"
                        f"DefaultRuntimeDir {self.folder}\nMutex file:{self.folder} default\nListen 127.0.0.1:{self.port}\nInclude {recipe}\n")
        return self.launch("/usr/sbin/apache2", "-d", self.folder, "-f", main, "-DFOREGROUND")


class UnitTest(unittest.TestCase):
    def test_the_unit_is_sound_and_leaves_the_service_little(self):
        needed("/usr/bin/systemd-analyze")
        with tempfile.TemporaryDirectory() as folder:
            unit = pathlib.Path(folder) / "quillet-itemhub@8081.service"
            unit.write_text((RECIPES / "quillet-itemhub@.service").read_text().replace("/usr/bin/quillet-itemhub", service.PROGRAM)
                            .replace("Documentation=man:quillet-itemhub(1)\n", ""))
            checked = subprocess.run(["systemd-analyze", "verify", "--man=no", unit], capture_output=True, text=True)
            self.assertEqual((checked.returncode, checked.stderr), (0, ""))
            rated = subprocess.run(["systemd-analyze", "security", "--offline=true", "--threshold=15", unit], capture_output=True, text=True)
            self.assertEqual(rated.returncode, 0, rated.stdout[-500:])

    def test_the_service_needs_nothing_of_the_machine_but_its_data(self):
        needed("/usr/bin/bwrap")
        each = Service()
        self.addCleanup(each.close)
        each.admin("customer", "add", "acme")
        workspace = each.admin("workspace", "add", "acme", "Designs")
        build = pathlib.Path(service.PROGRAM).parents[1]
        each.wall = ["bwrap", "--ro-bind", "/usr", "/usr", "--symlink", "usr/lib", "/lib", "--symlink", "usr/lib64", "/lib64", "--ro-bind", "/etc", "/etc",
                     "--proc", "/proc", "--dev", "/dev", "--tmpfs", "/tmp", "--ro-bind", build, build, "--ro-bind", each.config, each.config,
                     "--bind", each.data, each.data, "--unshare-pid", "--unshare-ipc", "--die-with-parent", "--cap-drop", "ALL"]
        try:
            each.start()
        finally:
            if not each.port and each.process.returncode is not None:
                each.process.stderr.close()
                self.skipTest("NOTICE: this machine lets nobody make such walls")
        boss = each.member("acme", "boss", "admin")
        item = boss("POST", f"/workspaces/{workspace}/items", {"caption": "Walled"}).json["id"]
        upload = boss.upload(b"walled")
        made = boss("POST", f"/items/{item}/attachments", {"name": "a", "docType": "x", "upload": upload}).json["id"]
        self.assertEqual(boss("GET", f"/attachments/{made}/versions/1/content").body, b"walled")


if __name__ == "__main__":
    service.main()
