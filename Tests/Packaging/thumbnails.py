#!/usr/bin/python3
"""Pictures of models for file managers, made in a cell like theirs.

    thumbnails.py BUILD [UNITTEST ARGUMENTS...]

BUILD is the folder of a build whose default targets are up to date.
"""

import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
ROOT = BUILD / "root"
REAL_DATA = pathlib.Path(os.environ.get("QUILLET_REAL_DATA", pathlib.Path(__file__).parents[3] / "shared/data"))
# Each folder has a few; all of them are tried with QUILLET_ALL_THUMBNAILS=1, which takes some minutes.
ALL = bool(os.environ.get("QUILLET_ALL_THUMBNAILS"))
FEW = ("as1-oc-214.stp", "as1_pe_203.igs", "Motor-c.brep", "two_objects_mixed_case.stl", "stl_empty_bin.stl", "dodgy_U008_segv.stp",
       "m00010.stp", "m00736.stp")


def confined(folder, file):
    """As file managers do it: nothing but the system's folders, this build, the one file and the folder of the picture; no
    network, no display, no home, no other processes."""
    command = ["bwrap", "--ro-bind", "/usr", "/usr", "--ro-bind-try", "/etc/ld.so.cache", "/etc/ld.so.cache", "--ro-bind-try",
               "/etc/alternatives", "/etc/alternatives", "--ro-bind-try", "/etc/fonts", "/etc/fonts"]
    for name in ("bin", "lib", "lib64", "sbin"):
        if os.path.islink(f"/{name}"):
            command += ["--symlink", f"usr/{name}", f"/{name}"]
        elif os.path.isdir(f"/{name}"):
            command += ["--ro-bind", f"/{name}", f"/{name}"]
    return command + ["--proc", "/proc", "--dev", "/dev", "--chdir", "/", "--clearenv", "--setenv", "PATH", "/usr/bin:/bin",
                      "--setenv", "HOME", "/nowhere", "--unshare-all", "--die-with-parent", "--tmpfs", "/tmp", "--ro-bind", ROOT, ROOT,
                      "--ro-bind", file, f"/tmp/model{file.suffix}", "--bind", folder, "/tmp/out"]


def can_confine():
    return shutil.which("bwrap") and subprocess.run(["bwrap", "--ro-bind", "/", "/", "--unshare-all", "true"],
                                                    capture_output=True).returncode == 0


def side_of(picture):
    data = picture.read_bytes()
    assert data.startswith(b"\x89PNG"), picture
    return max(struct.unpack(">II", data[16:24]))


class Thumbnails(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-thumbnails-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.document, cls.model = cls.folder / "bracket.vlra", cls.folder / "bracket.step"
        subprocess.run([ROOT / "bin/quillet", "--headless", "--command", "Design.Sample", "--command",
                        f"Document.SaveAs {cls.document}", "--command", f"Design.Export {cls.model}"], check=True,
                       capture_output=True, env={**os.environ, "HOME": str(cls.folder)}, timeout=120)

    def setUp(self):
        self.picture = self.folder / f"{self._testMethodName}.png"

    def thumbnailer(self, file, side=128, environment=None):
        return subprocess.run([ROOT / "bin/quillet-thumbnailer", file, self.picture, str(side)], text=True, capture_output=True,
                              timeout=180, env={"PATH": "/usr/bin:/bin", "HOME": str(self.folder), **(environment or {})})

    def test_a_documents_picture_is_taken_out_of_it(self):
        # Without the program that could draw it, the network's and the window's libraries.
        alone = self.folder / "alone"
        for part in ("bin/quillet-thumbnailer", "lib/libVsZip10.so"):
            (alone / part).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / part, alone / part)
        for side, wanted in ((64, 64), (100, 100), (1024, 256)):
            subprocess.run([alone / "bin/quillet-thumbnailer", self.document, self.picture, str(side)], check=True, env={})
            self.assertEqual(side_of(self.picture), wanted)
        loaded = subprocess.run(["ldd", alone / "bin/quillet-thumbnailer"], check=True, capture_output=True, text=True).stdout
        self.assertNotRegex(loaded, "Qt6|libX|libGL|libTK")

    def test_damaged_packages_have_none_and_say_why(self):
        whole = self.document.read_bytes()
        damaged = self.folder / "damaged.vlra"
        with zipfile.ZipFile(self.document) as package:
            place = package.getinfo("thumbnail.png").header_offset
        for broken in (whole[:-30], whole[:len(whole) // 2], whole[:200], whole[:place + 80] + b"noise" * 50 + whole[place + 330:]):
            damaged.write_bytes(broken)
            ran = self.thumbnailer(damaged)
            self.assertEqual(ran.returncode, 1, ran.stderr)
            self.assertTrue(ran.stderr.startswith(f"quillet-thumbnailer: {damaged}: "), ran.stderr)
            self.assertFalse(self.picture.exists())
        for wrong in ((self.folder / "missing.step", 1), (self.folder, 1)):
            self.assertEqual(self.thumbnailer(wrong[0]).returncode, wrong[1])
        for side in ("0", "-1", "big", "99999", ""):
            self.assertEqual(self.thumbnailer(self.document, side).returncode, 2)

    def test_a_foreign_model_is_drawn_once(self):
        cache = self.folder / "cache"
        (cache / "quillet/pictures").mkdir(parents=True)
        environment = {"XDG_CACHE_HOME": str(cache)}
        self.assertEqual(self.thumbnailer(self.model, 128, environment).returncode, 0)
        self.assertEqual(side_of(self.picture), 128)
        kept = list((cache / "quillet/pictures").iterdir())
        self.assertEqual(len(kept), 1)
        # Taken from there the next time, whatever it shows.
        shutil.copy(self.picture, kept[0])
        self.assertEqual(self.thumbnailer(self.model, 200, environment).returncode, 0)
        self.assertEqual(side_of(self.picture), 128)
        # Another file has another picture, and so has a changed one.
        other = shutil.copy2(self.model, self.folder / "other.step")
        os.utime(self.model, (1, 1))
        for file in (other, self.model):
            self.assertEqual(self.thumbnailer(file, 200, environment).returncode, 0)
            self.assertEqual(side_of(self.picture), 200)
        self.assertEqual(list(self.folder.glob(f"{self.picture.name}.*")), [], "nothing is left beside the picture")

    def beside(self, program):
        """A thumbnailer that has another program beside it to draw with."""
        place = self.folder / self._testMethodName / "bin"
        place.mkdir(parents=True)
        shutil.copy(ROOT / "bin/quillet-thumbnailer", place)
        (place.parent / "lib").symlink_to(ROOT / "lib")
        (place / "quillet").write_text(program, encoding="utf-8")
        (place / "quillet").chmod(0o755)
        return place / "quillet-thumbnailer"

    def test_a_drawing_program_that_wants_too_much_memory_gets_none(self):
        for gigabytes, code in ((1, 0), (4, 1)):
            thumbnailer = self.beside("#!/usr/bin/python3\nimport shutil, sys\n"
                                      f"much = bytearray({gigabytes} << 30)\nshutil.copy({str(self.some_picture())!r}, sys.argv[-1])\n")
            ran = subprocess.run([thumbnailer, self.model, self.picture, "128"], env={"HOME": "/nowhere"}, capture_output=True)
            self.assertEqual(ran.returncode, code, ran.stderr)
            shutil.rmtree(thumbnailer.parents[1])

    def some_picture(self):
        with zipfile.ZipFile(self.document) as package:
            return package.extract("thumbnail.png", self.folder)

    def test_a_drawing_program_that_hangs_is_ended_with_the_thumbnailer(self):
        mark = self.folder / "hangs"
        thumbnailer = self.beside(f"#!/bin/sh\necho $$ >{mark}\nexec sleep 600\n")
        with subprocess.Popen([thumbnailer, self.model, self.picture, "128"], env={"HOME": "/nowhere"}) as ran:
            while not (mark.exists() and mark.read_text().strip()):
                time.sleep(0.02)
            ran.kill()
        process = pathlib.Path("/proc", mark.read_text().strip())
        for _ in range(500):
            if not process.exists() or process.joinpath("stat").read_text().split()[2] == "Z":
                break
            time.sleep(0.02)
        else:
            self.fail("the drawing program goes on without anybody who waits for it")

    @unittest.skipUnless(can_confine(), "no bwrap here, or it may not make a cell")
    def test_in_a_cell_it_draws_what_can_be_read_and_leaves_the_rest(self):
        files = [self.document, self.model]
        if REAL_DATA.is_dir():
            real = [*REAL_DATA.glob("*.*"), *(REAL_DATA / "malformed").glob("*.*")]
            files += sorted(file for file in real if file.suffix in (".stp", ".step", ".igs", ".iges", ".brep", ".stl")
                            and (ALL or file.name in FEW))
        else:
            print("NOTICE: no real CAD files; their pictures aren't tried.", file=sys.stderr)
        drawn = []
        for file in files:
            out = self.folder / "out"
            out.mkdir(exist_ok=True)
            begun = time.monotonic()
            ran = subprocess.run([*confined(out, file), ROOT / "bin/quillet-thumbnailer", f"/tmp/model{file.suffix}", "/tmp/out/x.png",
                                  "128"], capture_output=True, text=True, timeout=180)
            self.assertIn(ran.returncode, (0, 1), f"{file}: {ran.stderr}")
            if ALL:
                print(f"{file.name}: {ran.returncode} {time.monotonic() - begun:.1f} s {ran.stderr.strip()}", file=sys.stderr)
            if ran.returncode == 0:
                self.assertEqual(side_of(out / "x.png"), 128, file)
                drawn.append(file.name)
            self.assertEqual([name for name in os.listdir(out) if name != "x.png"], [], "nothing stays beside it")
            shutil.rmtree(out)
        self.assertIn("bracket.vlra", drawn)
        self.assertIn("bracket.step", drawn)
        if REAL_DATA.is_dir():
            for name in ("as1-oc-214.stp", "as1_pe_203.igs", "Motor-c.brep"):
                self.assertIn(name, drawn)
            self.assertNotIn("stl_empty_bin.stl", drawn)


if __name__ == "__main__":
    unittest.main()
