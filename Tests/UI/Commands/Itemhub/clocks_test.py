"""A service whose clock is an hour off the program's: everything works, since neither compares its time with the other's."""

import datetime
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "Services/Itemhub"))
import service  # noqa: E402
from dashboard_test import Browser  # noqa: E402

QUILLET = pathlib.Path(service.PROGRAM).with_name("quillet")


class ClocksTest(unittest.TestCase):
    def begin(self, ahead):
        made = service.Service()
        self.addCleanup(made.close)
        made.environment = {"LD_PRELOAD": os.environ["QUILLET_FAILING_CALLS"], "ITEMHUB_AHEAD": str(ahead)}
        made.admin("customer", "add", "acme")
        made.admin("workspace", "add", "acme", "Designs")
        return made.start()

    def lines(self, *lines):
        """The program's answers, in a home folder of its own."""
        with tempfile.TemporaryDirectory() as home:
            words = [word for line in lines for word in ("--command", line)]
            environment = {**os.environ, "HOME": home, **{f"XDG_{name}_HOME": f"{home}/{name}" for name in ("CONFIG", "DATA", "CACHE")}}
            done = subprocess.run([QUILLET, "--headless", *words], env=environment, capture_output=True, text=True, timeout=120)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            return done.stdout

    def test_programs_pages_and_tickets_work_an_hour_apart(self):
        for ahead in (3600, -3600):
            with self.subTest(ahead=ahead):
                here = self.begin(ahead)
                boss = here.member("acme", "boss", "admin")
                address = f"http://127.0.0.1:{here.port}/"
                self.lines(f"Dashboard.AuthenticateWithTokenCmd {address} {boss.token} acme", 'Dashboard.NewItemCmd 1 "Clock" 0 0 VeloraAssetType',
                           "Design.Box 10 20 30", "Document.Save", "Itemhub.Wait 60")
                made = datetime.datetime.fromisoformat(boss("GET", "/items/1").json["createdAt"])
                self.assertAlmostEqual((made - datetime.datetime.now(datetime.UTC)).total_seconds(), ahead, delta=600, msg="it has another clock")
                # A client that signs requests learns the service's time from its refusal.
                consumer = dict(line.split(" ") for line in here.admin("consumer", "add", "acme", "Line").splitlines())
                given = dict(line.split(" ") for line in here.admin("token", "add-signed", "acme", "boss", consumer["consumerKey"], "writer", 1).splitlines())
                told = self.lines(
                    "Commands.Start ItemhubAuthenticateWithTokenCommand "
                    f"ItemhubTenantUri={address} ItemhubTenant=acme OAuthToken={given['token']} OAuthTokenSecret={given['tokenSecret']} "
                    f"OAuthSessionHandle={given['sessionHandle']} ConsumerKey={consumer['consumerKey']} ConsumerSecret={consumer['consumerSecret']}",
                    "Itemhub.Open 1", "Design.Box 1 2 3", "Document.Save", "Itemhub.Wait 60", "Itemhub.Versions 1")
                self.assertIn("\t3\t", told)

                browser = Browser(here.port)
                browser.sign_in()
                self.assertEqual(browser("GET", "/session").json["account"], "boss")
                uri = boss("GET", "/items/1/attachments").json["attachments"][0]["uri"]
                asked = browser("POST", "/program/requests", {"name": "ItemhubOpenAttachmentCommand", "args": {"fileUri": uri}},
                                X_CSRF_Token=browser.proof).json
                ticket = asked["ticket"].rsplit("/", 1)[1]
                self.assertEqual(boss("POST", "/program/tickets", {"ticket": ticket}).json["id"], asked["id"])
                self.assertEqual(boss("POST", "/program/tickets", {"ticket": ticket}).status, 404, "it serves once")
                entered = Browser(here.port)
                self.assertEqual(entered("GET", boss("POST", "/dashboard/links").json["url"].split(f":{here.port}")[1]).status, 303)


if __name__ == "__main__":
    service.main()
