#!/usr/bin/python3
"""Installs what is built into places of its own, and tries the installation.

    installation.py BUILD [UNITTEST ARGUMENTS...]

BUILD is the folder of a build whose default targets are up to date.
"""

import filecmp
import importlib.util
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
SOURCES = pathlib.Path(__file__).resolve().parents[2]


def install(prefix, destination=""):
    subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, "DESTDIR": str(destination)})


def without_build(command):
    """The command, in a view of the file system in which the build's folder is empty."""
    unshare = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    if subprocess.run([*unshare, "true"], stderr=subprocess.DEVNULL).returncode != 0:
        print("NOTICE: this system lets nobody hide a folder; the build stays in view.", file=sys.stderr)
        return command
    return [*unshare, "sh", "-c", 'mount -t tmpfs none "$0" && exec "$@"', BUILD, *command]


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-installed-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.prefix = cls.folder / "a prefix"
        install(cls.prefix)
        cls.tree = (cls.prefix / "bin/quillet").resolve().parents[1]

    def quillet(self, *arguments, program=None):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("QUILLET_ROOT", "LD_LIBRARY_PATH") and not name.startswith("XDG_")}
        ran = subprocess.run(without_build([program or self.prefix / "bin/quillet", *arguments]), cwd=self.folder,
                             env={**environment, "HOME": str(self.folder)}, capture_output=True, text=True, timeout=240)
        self.assertEqual(ran.returncode, 0, ran.stdout + ran.stderr)
        return ran.stdout

    def test_does_the_main_job_though_the_build_is_gone(self):
        model = self.folder / "bracket.step"
        self.quillet("--headless", "--command", "Design.Sample", "--command", f"Asset.Export {model}")
        examples = self.prefix / "share/doc/quillet/Examples"
        self.quillet("--headless", "--replay", examples / "first-look.txt", "--set", f"model={model}", "--set",
                     f"out={self.folder}")
        picture = (self.folder / "first-look.png").read_bytes()
        self.assertEqual(struct.unpack(">II", picture[16:24]), (1920, 1080))
        stl = (self.folder / "first-look.stl").read_bytes()
        triangles, = struct.unpack("<I", stl[80:84])
        self.assertGreater(triangles, 12)
        self.assertEqual(len(stl), 84 + 50 * triangles)

    def test_runs_scripts(self):
        script = self.folder / "script.py"
        script.write_text("import quillet\nprint('by', quillet.__name__)\n")
        self.assertIn("by quillet", self.quillet("--headless", "--echo", "--replay", script))

    def test_is_imported_by_any_python(self):
        code = ("import quillet; from quillet import design; quillet.new_document(); print(round(design.box(1, 2, 3).body.volume));"
                "print(open('/proc/self/maps').read())")
        environment = {**os.environ, "PYTHONPATH": str(self.tree / "lib/python"), "QUILLET_PROFILE_DIR": str(self.folder / "python")}
        environment.pop("QUILLET_ROOT", None)
        told = subprocess.run(["/usr/bin/python3", "-c", code], check=True, capture_output=True, text=True, env=environment).stdout
        self.assertTrue(told.startswith("6\n"), told[:200])
        self.assertIn(str(self.tree.resolve()), told)
        self.assertNotIn(str(BUILD), told)

    @unittest.skipUnless(importlib.util.find_spec("ensurepip") and importlib.util.find_spec("venv"), "no venv here")
    def test_a_virtual_environment_gets_the_module_of_the_installed_program(self):
        environment = self.folder / "environment"
        subprocess.run(["/usr/bin/python3", "-m", "venv", environment], check=True)

        def pip(**more):
            return subprocess.run([environment / "bin/pip", "install", "--quiet", "--no-index", "--no-build-isolation", SOURCES],
                                  capture_output=True, text=True, env={"PATH": "/usr/bin:/bin", "HOME": str(self.folder), **more})

        refused = pip(PATH=str(environment / "bin"))
        self.assertNotEqual(refused.returncode, 0)
        self.assertIn("The quillet program is not on the search path", refused.stdout + refused.stderr)
        installed = pip(PATH=f"{self.prefix}/bin:/usr/bin:/bin")
        self.assertEqual(installed.returncode, 0, installed.stderr)
        code = "import importlib.metadata, quillet; print(quillet.__file__, importlib.metadata.version('quillet') in quillet.version)"
        told = subprocess.run(without_build([environment / "bin/python", "-c", code]), check=True, capture_output=True, text=True,
                              env={"PATH": "/usr/bin:/bin", "HOME": str(self.folder)}).stdout
        self.assertEqual(told, f"{self.tree}/lib/python/quillet/__init__.py True\n")

    def test_is_the_same_as_what_was_built(self):
        for part in ("Documentation", "Localization", "Server", "UI", "lib/python", "share"):
            for built in (BUILD / "root" / part).rglob("*"):
                if built.is_file() and built.suffix != ".pyc":
                    path = built.relative_to(BUILD / "root")
                    installed = (self.prefix if part == "share" else self.tree) / path
                    self.assertTrue(installed.is_file(), f"{path} is not installed, or is left from an earlier build")
                    self.assertTrue(filecmp.cmp(built, installed, shallow=False), path)
        for installed in [*self.tree.glob("bin/*"), *self.tree.rglob("lib*.so*")]:
            built = BUILD / "root" / installed.relative_to(self.tree)
            self.assertTrue(filecmp.cmp(built, installed, shallow=False), installed)

    def test_names_no_folder_of_the_build(self):
        listed = subprocess.run(["readelf", "--dynamic", *self.tree.glob("bin/*"), *self.tree.rglob("lib*.so*")],
                                check=True, capture_output=True, text=True).stdout
        searched = re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", listed)
        self.assertTrue(searched)
        for folder in (folder for folders in searched for folder in folders.split(":")):
            self.assertTrue(folder.startswith("$ORIGIN"), folder)
        for link in (path for path in self.prefix.rglob("*") if path.is_symlink()):
            self.assertTrue(link.exists() and not os.readlink(link).startswith("/"), link)

    @unittest.skipUnless(shutil.which("update-mime-database") and shutil.which("gio"), "nothing here tells types of files")
    def test_tells_the_desktop_its_documents_by_their_content(self):
        document = self.folder / "bracket.vlra"
        self.quillet("--headless", "--command", "Design.Sample", "--command", f"Document.SaveAs {document}")
        nameless = document.rename(self.folder / "bracket")
        data = self.folder / "data"
        shutil.copytree(self.prefix / "share/mime", data / "mime")
        subprocess.run(["update-mime-database", data / "mime"], check=True, capture_output=True)
        told = subprocess.run(["gio", "info", "-a", "standard::content-type", nameless], check=True, capture_output=True,
                              text=True, env={**os.environ, "XDG_DATA_DIRS": f"{data}:/usr/share"}).stdout
        self.assertIn("application/vnd.quillet.document", told)

    def test_can_be_staged_for_a_package(self):
        staged = self.folder / "staged"
        install("/usr", staged)
        self.assertEqual(sorted(path.name for path in staged.iterdir()), ["usr"])
        self.assertRegex(self.quillet("--version", program=staged / "usr/bin/quillet"), "^Quillet ")
        self.assertTrue((staged / "usr/share/applications/quillet.desktop").is_file())
        self.assertIn("x-scheme-handler/quillet", (staged / "usr/share/applications/quillet-links.desktop").read_text())
        self.assertTrue((staged / "usr/share/icons/hicolor/48x48/apps/quillet.png").is_file())


if __name__ == "__main__":
    unittest.main()
