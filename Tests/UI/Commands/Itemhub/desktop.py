"""A desktop with a home folder, a keyring and a screen, on which links start the program, as browsers pass them on."""

import contextlib
import json
import os
import pathlib
import shutil
import subprocess
import time

PATIENCE = 60  # Seconds, on a machine that has much to do.
PROGRAMS = ("dbus-run-session", "gnome-keyring-daemon", "xdg-open", "update-desktop-database", "xdotool", "openbox", "Xvfb")


def missing():
    """The programs it lacks; empty if none."""
    return ", ".join(name for name in PROGRAMS if not shutil.which(name))


def until(what, pause=0.002):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        if found := what():
            return found
        time.sleep(pause)
    raise RuntimeError("It doesn't come.")


class Desktop:
    """A home folder, a keyring and a screen."""

    def __init__(self, folder, root, display):
        self.home = folder / "home"
        applications = self.home / ".local/share/applications"
        applications.mkdir(parents=True)
        shutil.copy(root / "share/applications/quillet-links.desktop", applications)
        subprocess.run(["update-desktop-database", applications], check=True)
        self.environment = {**os.environ, "HOME": str(self.home), "DISPLAY": display, "PATH": f"{root / 'bin'}:{os.environ['PATH']}",
                            "XDG_DATA_HOME": str(self.home / ".local/share"), "XDG_CONFIG_HOME": str(self.home / ".config"),
                            "XDG_CACHE_HOME": str(self.home / ".cache"), "XDG_RUNTIME_DIR": str(folder / "run"), "WAYLAND_DISPLAY": ""}
        (folder / "run").mkdir(mode=0o700)
        self.run("gnome-keyring-daemon", "--unlock", "--components=secrets", input="secret")

    def run(self, *words, **more):
        return subprocess.run([str(word) for word in words], env=self.environment, check=True, capture_output=True, text=True, **more).stdout

    def sign_in(self, address, token):
        """As the program's own window does, which stores its credentials."""
        self.run("item_client", "", "keep", address, token)

    def trust(self, address):
        """The effect of "Always" in the program's question."""
        settings = next(self.home.rglob("Itemhub.json"))
        settings.write_text(json.dumps({**json.loads(settings.read_text()), "dashboards": [address]}))

    def end_programs(self):
        """Those of this home folder."""
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            with contextlib.suppress(OSError):
                if (process / "comm").read_text().strip() == "quillet" and f"HOME={self.home}\0".encode() in (process / "environ").read_bytes():
                    os.kill(int(process.name), 15)
                    until(lambda each=process: not each.exists())

    def titles(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Wheel"], env=self.environment, capture_output=True, text=True)
        return "".join(subprocess.run(["xdotool", "getwindowname", window], env=self.environment, capture_output=True, text=True).stdout
                       for window in found.stdout.split())

    def shows(self, name):
        until(lambda: name in self.titles())
        return time.time()


def fill(team, desktop, folder):
    """Two items with a design each."""
    design = folder / "design.vlra"
    desktop.run("quillet", "--headless", "--command", "Commands.Start NewSingleDocumentCommand AssetType=VeloraAssetType",
                "--command", "Design.Box 40 20 10", "--command", f"Document.SaveAs {design}")
    ids = {}
    for name in ("Wheel A", "Wheel B"):
        ids[name] = team.boss("POST", f"/workspaces/{team.workspace}/items", {"caption": name}).json["id"]
        upload = team.boss.upload(design.read_bytes())
        made = team.boss("POST", f"/items/{ids[name]}/attachments", {"name": f"{name}.vlra", "docType": "VeloraDocType", "upload": upload})
        assert made.status == 201, made
    return ids
