#!/usr/bin/python3
"""The built program where little is as it should be: homes, locales, displays, other versions.

    surroundings.py BUILD [UNITTEST ARGUMENTS...]

BUILD is the folder of a build whose default targets are up to date.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
# Who may do everything finds nothing forbidden.
NOBODY = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else []


class Surroundings(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-surroundings-"))
        self.folder.chmod(0o777)
        self.addCleanup(shutil.rmtree, self.folder)

    def home(self, name, mode=0o700, owner=65534):
        home = self.folder / name
        home.mkdir()
        if NOBODY:
            os.chown(home, owner, owner)
        home.chmod(mode)
        return home

    def run_quillet(self, *arguments, environment=None, program=BUILD / "root/bin/quillet"):
        return subprocess.run([*NOBODY, program, *arguments], cwd=self.folder, text=True, capture_output=True, timeout=240,
                              errors="replace", env={"PATH": "/usr/bin:/bin", "TMPDIR": str(self.folder), **(environment or {})})

    def test_homes_and_locales_of_all_kinds_keep_it_from_nothing(self):
        usual = str(self.home("usual"))
        for number, environment in enumerate((
                {}, {"HOME": "/nonexistent"}, {"HOME": str(self.home("closed", 0o500))},
                {"HOME": str(self.home("another's", 0o755, 0))}, {"HOME": str(self.home("a prefix with blanks"))},
                {"HOME": usual, "XDG_CACHE_HOME": "/nonexistent", "XDG_CONFIG_HOME": "/proc", "XDG_DATA_HOME": "relative"},
                {"HOME": usual, "LC_ALL": "C"}, {"HOME": usual, "LANG": "xx_YY.UTF-8"}, {"HOME": usual, "LC_ALL": "tr_TR.UTF-8"})):
            model = self.folder / f"Würfel {number}.step"
            ran = self.run_quillet("--headless", "--command", "Design.New", "--command", "Design.Box 1.5 2 3", "--command",
                                   f'Design.Export "{model}"', environment=environment)
            self.assertEqual(ran.returncode, 0, f"{environment}: {ran.stderr}")
            told = self.run_quillet("--info", model, environment=environment)
            self.assertEqual(told.returncode, 0, f"{environment}: {told.stderr}")
            self.assertIn("Volume: 9 mm", told.stdout, environment)
            self.assertIn(f"Name: Würfel {number}" if "C" not in environment.values() else "Name: W", told.stdout)

    def test_without_a_graphics_driver_it_does_all_but_pictures_and_says_which_driver_to_install(self):
        nothing = {"HOME": str(self.home("usual")), "__EGL_VENDOR_LIBRARY_DIRS": "/nonexistent", "LIBGL_DRIVERS_PATH": "/nonexistent"}
        model, picture = self.folder / "x.step", self.folder / "x.png"
        ran = self.run_quillet("--headless", "--command", "Design.Sample", "--command", f"Design.Export {model}", "--command",
                               f"Commands.Start SaveAsImageCommand Path={picture} Width=300 Height=200", environment=nothing)
        self.assertEqual((ran.returncode, model.exists(), picture.exists()), (1, True, False), ran.stderr)
        self.assertIn("libgl1-mesa-dri", ran.stderr)

    def test_two_versions_side_by_side_take_nothing_from_each_other(self):
        for version in ("one version", "another version"):
            subprocess.run(["cmake", "--install", BUILD, "--prefix", self.folder / version], check=True, stdout=subprocess.DEVNULL)
        home = str(self.home("usual"))
        for version, other in (("one version", "another version"), ("another version", "one version")):
            ran = self.run_quillet("--headless", "--command", "Design.Sample", "--command", "Design.Export x.step", "--command",
                                   "Document.Open x.step", program=self.folder / version / "bin/quillet",
                                   environment={"HOME": home, "LD_DEBUG": "files", "PATH": f"{self.folder}/{other}/bin:/usr/bin:/bin"})
            self.assertEqual(ran.returncode, 0, ran.stderr[-2000:])
            self.assertIn(f"{version}/", ran.stderr)
            self.assertNotIn(f"/{other}/", ran.stderr)

    @unittest.skipUnless(shutil.which("weston") and any(pathlib.Path("/usr/lib").glob("*/qt6/plugins/platforms/libqwayland*")),
                         "no weston, or no Qt for Wayland")
    def test_under_wayland_without_x_the_window_comes_up_and_is_used_though_the_home_is_read_only(self):
        runtime = str(self.home("runtime"))
        environment = {"HOME": str(self.home("closed", 0o500)), "XDG_RUNTIME_DIR": runtime, "PATH": "/usr/bin:/bin"}
        weston = subprocess.Popen([*NOBODY, "weston", "--backend=headless-backend.so", "--width=1366", "--height=768", "--socket=wl-quillet",
                                   "--idle-time=0"], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            for _ in range(300):
                if pathlib.Path(runtime, "wl-quillet").exists():
                    break
                time.sleep(0.1)
            lines = self.folder / "lines.txt"
            lines.write_text(f"Design.Sample\nCommands.Start FitCommand\nCommands.Start SaveAsImageCommand Path={self.folder}/w.png "
                             "Width=400 Height=300\n", encoding="utf-8")
            # Once it has shown what it was told to, others can hand files to it.
            told = ""
            with subprocess.Popen([*NOBODY, BUILD / "root/bin/quillet", "--replay", lines], cwd=self.folder, text=True, stderr=subprocess.PIPE,
                                  env={**environment, "WAYLAND_DISPLAY": "wl-quillet", "WAYLAND_DEBUG": "1"}) as window:
                for line in window.stderr:
                    told += line
                    if any(pathlib.Path(runtime).rglob("window-*")):
                        window.terminate()
            self.assertEqual(window.returncode, 143, told[-2000:])
        finally:
            weston.terminate()
            weston.wait()
        self.assertIn("xdg_toplevel", told)
        self.assertGreater((self.folder / "w.png").stat().st_size, 5000)


if __name__ == "__main__":
    unittest.main()
