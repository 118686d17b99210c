#!/usr/bin/python3
"""Packages of what is built, as the checker of packages sees them.

    packages.py BUILD [UNITTEST ARGUMENTS...]

BUILD is the folder of a build whose default targets are up to date.
"""

import hashlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
MAKER = pathlib.Path(__file__).resolve().parents[2] / "Packaging/packages"


def made(folder, **environment):
    # Compressed as little as possible, which is half of the work otherwise.
    subprocess.run([MAKER, BUILD, folder], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, "DPKG_DEB_COMPRESSOR_LEVEL": "1", **environment})
    return {file.name: hashlib.sha256(file.read_bytes()).hexdigest() for file in folder.glob("*.deb")}


@unittest.skipUnless(shutil.which("dpkg-buildpackage") and shutil.which("dh") and shutil.which("lintian"),
                     "no debhelper or lintian here")
class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-packages-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.sums = made(cls.folder / "first")

    def content_of(self, name):
        file, = (self.folder / "first").glob(f"{name}_*.deb")
        listed = subprocess.run(["dpkg-deb", "--contents", file], check=True, capture_output=True, text=True).stdout
        return {line.split()[5].removeprefix("."): line.split()[0] for line in listed.splitlines()}

    def test_nothing_is_found_that_has_no_reason(self):
        # No error at all: not even with a reason.
        ran = subprocess.run(["lintian", "--allow-root", "--tag-display-limit", "0", "--show-overrides",
                              *(self.folder / "first").glob("*.deb")], capture_output=True, text=True)
        self.assertEqual((ran.returncode, [line for line in ran.stdout.splitlines() if not line.startswith(("O: ", "N: "))]), (0, []), ran.stderr)

    def test_the_same_build_gives_the_same_packages(self):
        again = made(self.folder / "elsewhere" / "second", TZ="Asia/Tokyo", LC_ALL="C")
        self.assertEqual(sorted(name.split("_")[0] for name in self.sums), ["python3-quillet", "quillet", "quillet-doc", "quillet-itemhub"])
        self.assertEqual(again, self.sums)

    def test_each_has_what_belongs_to_it(self):
        packages = [self.content_of(name) for name in ("quillet", "quillet-itemhub", "quillet-doc", "python3-quillet")]
        program, service, manual, module = packages
        for path in ("/usr/bin/quillet", "/usr/bin/quillet-thumbnailer", "/usr/share/applications/quillet.desktop",
                     "/usr/share/man/man1/quillet.1.gz", "/usr/share/zsh/vendor-completions/_quillet"):
            self.assertIn(path, program)
        self.assertIn("/usr/lib/quillet/bin/quillet-itemhub", service)
        self.assertIn("/usr/share/doc/quillet-doc/Docs/manual.md", manual)
        for path in ("/usr/lib/python3/dist-packages/quillet.pth", "/usr/lib/quillet/lib/python/_quillet.so"):
            self.assertIn(path, module)
        self.assertIn("/usr/lib/quillet/lib/python/quillet/__init__.py", program, "scripts in the program need no other package")
        files = [{path for path, mode in content.items() if not mode.startswith("d")} for content in packages]
        self.assertEqual(len(set().union(*files)), sum(map(len, files)), "no file is in two packages")
        for content in packages:
            for path, mode in content.items():
                self.assertTrue(mode[0] == "l" or mode[8] != "w", f"others may write {path}")


if __name__ == "__main__":
    unittest.main()
