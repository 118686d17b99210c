#!/usr/bin/python3
"""What desktops read of the built program: entries, description, types of files, icons.

    desktop.py BUILD [UNITTEST ARGUMENTS...]

BUILD is the folder of a build whose default targets are up to date.
"""

import configparser
import json
import os
import pathlib
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
SHARE = BUILD / "root/share"
SOURCES = pathlib.Path(__file__).resolve().parents[2]
REAL_DATA = pathlib.Path(os.environ.get("QUILLET_REAL_DATA", pathlib.Path(__file__).parents[3] / "shared/data"))
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"
# What the names of real files say; what their content says must be the same.
TYPES = {".stp": "model/step", ".step": "model/step", ".igs": "model/iges", ".iges": "model/iges",
         ".brep": "model/x-brep", ".stl": "model/stl"}


def needs(*programs):
    missing = [program for program in programs if not shutil.which(program)]
    return unittest.skipIf(missing, f"not installed: {', '.join(missing)}")


def entry(name="quillet.desktop"):
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(SHARE / "applications" / name, encoding="utf-8")
    return parser


def types_of_entry():
    return set(filter(None, entry()["Desktop Entry"]["MimeType"].split(";")))


class Desktop(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-desktop-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)

    def run_quillet(self, *arguments):
        ran = subprocess.run([BUILD / "root/bin/quillet", "--headless", *arguments], cwd=self.folder, text=True,
                             capture_output=True, timeout=240, env={**os.environ, "HOME": str(self.folder)})
        self.assertEqual(ran.returncode, 0, ran.stdout + ran.stderr)
        return ran.stdout

    @needs("desktop-file-validate", "appstreamcli")
    def test_entries_and_description_are_valid(self):
        checked = [["desktop-file-validate", file] for file in sorted((SHARE / "applications").glob("*.desktop"))]
        self.assertEqual(len(checked), 2)
        checked.append(["appstreamcli", "validate", "--no-net", "--pedantic", *(SHARE / "metainfo").glob("*.xml")])
        for command in checked:
            ran = subprocess.run(command, capture_output=True, text=True)
            self.assertEqual(ran.returncode, 0, ran.stdout + ran.stderr)
            self.assertNotIn("warning", ran.stdout + ran.stderr)

    def test_the_description_speaks_of_this_version_and_of_the_types_in_the_menu(self):
        described = xml.etree.ElementTree.parse(next((SHARE / "metainfo").glob("*.xml"))).getroot()
        version = described.find("releases/release").get("version")
        self.assertTrue(self.run_quillet("--version").startswith(f"Quillet {version}"))
        self.assertEqual({told.text for told in described.findall("provides/mediatype")}, types_of_entry())
        self.assertTrue((SHARE / "applications" / described.find("launchable").text).is_file())
        shown = described.findall("screenshots/screenshot/image")
        self.assertGreater(len(shown), 1)
        for image in shown:
            picture = (SOURCES / "Docs/pictures" / image.text.rsplit("/", 1)[1]).read_bytes()
            self.assertEqual((int(image.get("width")), int(image.get("height"))), struct.unpack(">II", picture[16:24]), image.text)

    @needs("flatpak-builder")
    def test_the_flatpak_is_described_as_its_builder_reads_it_and_takes_what_the_build_makes(self):
        file = SOURCES / "Packaging/org.quillet.quillet.yaml"
        read = json.loads(subprocess.run(["flatpak-builder", "--show-manifest", file], check=True, capture_output=True, text=True, cwd=self.folder).stdout)
        self.assertEqual(read["id"] + ".metainfo.xml", read["rename-appdata-file"])
        for path in (f"applications/{read['rename-desktop-file']}", f"metainfo/{read['rename-appdata-file']}",
                     f"icons/hicolor/scalable/apps/{read['rename-icon']}.svg"):
            self.assertTrue((SHARE / path).is_file(), path)
        own = read["modules"][-1]
        self.assertEqual((own["name"], [source["type"] for source in own["sources"]]), ("quillet", ["dir"]))

    def test_the_actions_of_the_menu_are_lines_that_the_program_knows(self):
        actions = entry()["Desktop Entry"]["Actions"].strip(";").split(";")
        self.assertEqual(actions, ["new", "recent"])
        for action in actions:
            program, *arguments = shlex.split(entry()[f"Desktop Action {action}"]["Exec"])
            self.assertEqual(program, "quillet")
            self.run_quillet(*arguments)

    @needs("update-mime-database", "gio")
    def test_files_are_told_by_their_content_and_by_their_names(self):
        data = self.folder / "data"
        shutil.copytree(SHARE / "mime", data / "mime")
        subprocess.run(["update-mime-database", data / "mime"], check=True, capture_output=True)
        files = self.folder / "files"
        files.mkdir()
        exports = [part for suffix in ("step", "igs", "brep", "stl", "obj", "glb", "gltf")
                   for part in ("--command", f"Design.Export {files}/x.{suffix}")]
        self.run_quillet("--command", "Design.Sample", *exports, "--command", f"Document.SaveAs {files}/x.vlra")
        # Their names tell all of them; content, those whose formats begin with something of their own.
        wanted = {file: None for file in files.iterdir() if file.suffix != ".mtl"}
        for name, kind in (("x.step", "model/step"), ("x.igs", "model/iges"), ("x.brep", "model/x-brep"),
                           ("x.glb", "model/gltf-binary"), ("x.vlra", "application/vnd.quillet.document")):
            wanted[shutil.copy(files / name, files / f"nameless-{name[2:]}")] = kind
        if not REAL_DATA.is_dir():
            print("NOTICE: no real CAD files; what they are told as isn't tried.", file=sys.stderr)
        for file in sorted(REAL_DATA.glob("*.*")):
            # An empty file, and one that begins with blanks only, tell nothing but by their names.
            kind = TYPES.get(file.suffix)
            if kind:
                wanted[file] = kind
                if kind != "model/stl":
                    with file.open("rb") as full:
                        (files / f"{file.name}-head").write_bytes(full.read(4096))
                    wanted[files / f"{file.name}-head"] = kind
        for file, kind in wanted.items():
            told = subprocess.run(["gio", "info", "-a", "standard::content-type", file], check=True, text=True,
                                  capture_output=True, env={**os.environ, "XDG_DATA_DIRS": f"{data}:/usr/share"}).stdout
            told = told.split("standard::content-type:")[1].strip()
            self.assertIn(told, [kind] if kind else types_of_entry(), file)

    def test_icons_are_there_in_the_sizes_of_their_folders(self):
        icons = SHARE / "icons/hicolor"
        wanted = [("apps", entry()["Desktop Entry"]["Icon"])]
        kinds = xml.etree.ElementTree.parse(SHARE / "mime/packages/quillet.xml").getroot()
        self.assertEqual({kind.get("type") for kind in kinds}, set(types_of_entry()), "what is opened has an icon")
        for kind in kinds:
            wanted.append(("mimetypes", kind.find(f"{MIME}icon").get("name")))
        for context, name in wanted:
            pictures = [*icons.glob(f"*/{context}/{name}.png")]
            self.assertGreater(len(pictures), 10, name)
            self.assertTrue((icons / "scalable" / context / f"{name}.svg").is_file(), name)
            for picture in pictures:
                width, height = struct.unpack(">II", picture.read_bytes()[16:24])
                self.assertEqual(picture.parents[1].name, f"{width}x{height}")


if __name__ == "__main__":
    unittest.main()
