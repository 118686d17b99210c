"""If no program is running, the page's link starts one through the desktop; it asks its user and does what the page wants."""

import os
import pathlib
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parents[2] / "Services/Itemhub"), str(HERE.parents[3] / "Benchmarks")]
import desktop  # noqa: E402
import service  # noqa: E402
import window  # noqa: E402

IN_SESSION = "QUILLET_TEST_SESSION"


class ColdStartTest(service.ServiceTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        display = self.enterContext(window.screen())
        root = pathlib.Path(service.PROGRAM).parents[1]
        self.desktop = desktop.Desktop(pathlib.Path(folder.name), root, display)
        manager = subprocess.Popen(["openbox"], env=self.desktop.environment, stderr=subprocess.DEVNULL)
        self.addCleanup(lambda: (manager.terminate(), manager.wait()))
        self.addCleanup(self.desktop.end_programs)
        self.items = desktop.fill(self, self.desktop, pathlib.Path(folder.name))
        self.desktop.sign_in(f"http://127.0.0.1:{self.service.port}/", self.boss.token)

    def ask(self, name):
        uri = self.boss("GET", f"/items/{self.items[name]}/attachments").json["attachments"][0]["uri"]
        return self.boss("POST", "/program/requests", {"name": "ItemhubOpenAttachmentCommand", "args": {"fileUri": uri}}).json

    def state(self, asked):
        return self.boss("GET", f"/program/requests/{asked['id']}").json["state"]

    def follow(self, link):
        subprocess.run(["setsid", "-f", "xdg-open", link], env=self.desktop.environment, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=True)

    def answered(self, asked, *keys):
        """What the page is told once the question over the window has been answered by keys."""
        windows = lambda: self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "quillet").split()
        desktop.until(lambda: len(windows()) > 1)
        for _ in range(10):
            time.sleep(1)  # Until it has the focus.
            self.desktop.run("xdotool", "key", "--delay", "100", *keys)
            if (now := self.state(asked)) != "taken":
                break
        return now

    def test_a_link_starts_the_program_which_asks_first_and_serves_once(self):
        asked = self.ask("Wheel A")
        self.follow(asked["ticket"])
        desktop.until(lambda: self.state(asked) == "taken")
        # Pressing Enter without reading refuses.
        self.assertEqual(self.answered(asked, "Left", "Left", "space"), "done")
        self.desktop.shows("Wheel A")
        # The running program takes the next link; the first one's ticket is no longer valid.
        other = self.ask("Wheel B")
        self.follow(asked["ticket"])
        desktop.until(lambda: self.state(other) == "taken")
        self.assertNotIn("Wheel B", self.desktop.titles())
        self.assertEqual(self.answered(other, "Return"), "refused")
        self.assertIn("Wheel A", self.desktop.titles())


if __name__ == "__main__":
    if absent := desktop.missing():
        if os.environ.get("QUILLET_SERVERS") == "required":
            sys.exit(f"not installed: {absent}")
        print(f"NOTICE: not installed: {absent}")
        sys.exit(service.SKIPPED)
    if not os.environ.get(IN_SESSION):
        os.execvpe("dbus-run-session", ["dbus-run-session", "--", sys.executable, "-B", *sys.argv], {**os.environ, IN_SESSION: "1"})
    service.main()
