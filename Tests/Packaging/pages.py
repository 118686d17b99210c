#!/usr/bin/python3
"""Manual, manual pages and completions of the built program, in the programs that read them.

    pages.py BUILD [UNITTEST ARGUMENTS...]

BUILD is the folder of a build whose default targets are up to date.
"""

import html
import json
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
SHARE = BUILD / "root/share"
PAGES = sorted((SHARE / "man").rglob("*.[0-9]"))


def needs(*programs):
    missing = [program for program in programs if not shutil.which(program)]
    return unittest.skipIf(missing, f"not installed: {', '.join(missing)}")


def output(*command, **more):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=60, **more).stdout


class ManualPages(unittest.TestCase):
    def test_there_is_one_for_each_program_of_the_path_and_for_the_lines(self):
        self.assertEqual([page.name for page in PAGES],
                         ["quillet-itemhub.1", "quillet-thumbnailer.1", "quillet.1", "quillet-lines.7"])

    @needs("mandoc", "man")
    def test_they_are_sound(self):
        for page in PAGES:
            # Pages of the same tree aren't installed yet; and they are a program's, not a system's.
            linted = subprocess.run(["mandoc", "-T", "lint", page], capture_output=True, text=True).stdout
            self.assertEqual([line for line in linted.splitlines()
                              if not re.search("referenced manual not found|operating system explicitly", line)], [])
            warned = subprocess.run(["man", "--warnings", "--local-file", page], capture_output=True, text=True,
                                    env={**os.environ, "LC_ALL": "C.UTF-8", "MANROFFSEQ": "", "MANWIDTH": "80"})
            self.assertEqual(warned.stderr, "", page)

    @needs("mandoc")
    def test_they_tell_everything_that_the_programs_know(self):
        shown = {page.name: re.sub(".\b", "", output("mandoc", "-T", "ascii", page)) for page in PAGES}
        for page, program in (("quillet.1", "quillet"), ("quillet-itemhub.1", "quillet-itemhub")):
            told = output(BUILD / "root/bin" / program, "--help")
            options = set(re.findall(r"--[a-z][a-z-]+[a-z]", told[told.index("Options:"):])) - {"--help-all"}
            self.assertGreater(len(options), 4)
            for option in options:
                self.assertRegex(shown[page], rf"{option}\b", page)
        help_of_lines = output(BUILD / "root/bin/quillet", "--headless", "--command", "help Design")
        lines = re.findall(r"Design\.\w+", help_of_lines)
        self.assertGreater(len(lines), 10)
        for line in lines:
            self.assertIn(f"{line}", shown["quillet-lines.7"])


class Book(unittest.TestCase):
    FOLDER = BUILD / "root/Documentation"
    SOURCES = pathlib.Path(__file__).resolve().parents[2]

    def written(self, manual, folder):
        docs = pathlib.Path(folder, "docs")
        (docs / "pictures").mkdir(parents=True, exist_ok=True)
        (docs / "erste-schritte.md").write_text("# Schritte\n", encoding="utf-8")
        (docs / "manual.md").write_text(manual, encoding="utf-8")
        (docs / "service.md").write_text("# Service\n", encoding="utf-8")
        return subprocess.run(["/usr/bin/python3", "-B", self.SOURCES / "Tools/Manual/book.py", BUILD / "root/bin/quillet", docs,
                               pathlib.Path(folder, "book"), self.SOURCES / "UI/Commands/Resources/Toolbar/Menus.xml"],
                              capture_output=True, text=True)

    def test_each_command_has_a_page_and_each_line_and_option_a_row(self):
        program = BUILD / "root/bin/quillet"
        reference = html.unescape(re.sub("<[^>]*>", " ", (self.FOLDER / "reference.html").read_text(encoding="utf-8")))
        for told in output(program, "--list-definitions").splitlines():
            self.assertTrue((self.FOLDER / "commands" / f"{json.loads(told)['id']}.html").is_file(), told)
        for told in map(json.loads, output(program, "--list-commands").splitlines()):
            self.assertIn(f"{told['area']}.{told['name']}", reference)
        for told in map(json.loads, output(program, "--list-options").splitlines()):
            self.assertIn(f"--{told['name']}", reference)
        for told in ("Ctrl+S", "UIBase.theme", ".stp .step"):
            self.assertIn(told, reference)
        saving = (self.FOLDER / "commands/SaveDocumentAsCommand.html").read_text(encoding="utf-8")
        for told in ("Ctrl+Shift+S", "File", "Path=", "VuCommands.SaveDocumentAs"):
            self.assertIn(told, saving)

    def test_what_scripts_import_is_told(self):
        told = html.unescape(re.sub("<[^>]*>", " ", (self.FOLDER / "python.html").read_text(encoding="utf-8")))
        script = "import quillet; print(*quillet.__all__)"
        with tempfile.TemporaryDirectory(prefix="quillet-script-") as folder:
            file = pathlib.Path(folder, "names.py")
            file.write_text(script, encoding="utf-8")
            names = set(output(BUILD / "root/bin/quillet", "--headless", "--script", file).split())
        self.assertGreater(len(names), 10)
        # Another module of the package, and the text of the version, stand elsewhere.
        for name in names - {"measure", "version"}:
            self.assertRegex(told, rf"\b{name}\b")
        for line in ("Box(", "quillet.measure", "save_as(self, path: Path)", "Magnifies the view by `factor`."):
            self.assertIn(line, told)

    @needs("Xvfb")
    def test_its_pictures_are_those_that_the_program_draws(self):
        with tempfile.TemporaryDirectory(prefix="quillet-pictures-") as folder:
            output(BUILD / "root/bin/quillet", "--headless", "--replay", self.SOURCES / "Docs/pictures/pictures.txt", "--set",
                   f"out={folder}")
            output(self.SOURCES / "Tests/Support/on_display.sh", "1366x768x24", BUILD / "root/bin/quillet", "--profile-dir", f"{folder}/profile",
                   "--replay", self.SOURCES / "Docs/pictures/window.txt", "--set", f"out={folder}")
            shutil.rmtree(f"{folder}/profile")
            drawn = {picture.name: picture.read_bytes()[16:24] for picture in pathlib.Path(folder).iterdir()}
        kept = {picture.name: picture.read_bytes()[16:24] for picture in (self.FOLDER / "pictures").iterdir()}
        self.assertEqual(drawn, kept, "in name and size; what shows in them may change with the program")

    def test_a_link_that_leads_nowhere_is_an_error(self):
        with tempfile.TemporaryDirectory(prefix="quillet-book-") as folder:
            good = self.written("# Manual\n\n## 1. First, the Steps\n\n[up](#1-first-the-steps) [other](service.md)\n", folder)
            self.assertEqual((good.returncode, good.stderr), (0, ""))
            for link in ("#nowhere", "nothing.html", "service.md#nowhere"):
                ran = self.written(f"# Manual\n\n[dead]({link})\n", folder)
                self.assertNotEqual(ran.returncode, 0, link)
                self.assertIn("manual.html: ", ran.stderr)


class Completions(unittest.TestCase):
    """Each asks a shell what it would offer behind what was typed."""

    def look(self, complete):
        self.assertIn("--headless", complete("quillet --head"))
        self.assertNotIn("--export", complete("quillet --head"))
        self.assertIn("Design.Box", complete("quillet --headless --command Design.B"))
        self.assertEqual(sorted(complete("quillet --references ")), ["compare", "fill", "update"])
        with tempfile.TemporaryDirectory(prefix="quillet-completed-") as folder:
            pathlib.Path(folder, "a model.step").touch()
            self.assertIn("model.step", "".join(complete(f"quillet {folder}/a")))

    @needs("bash")
    def test_bash(self):
        def complete(typed):
            words = typed.split(" ")
            script = ('source "$1"; shift; declare -F _quillet >/dev/null || exit 3; _quillet quillet "${@: -1}" "${@: -2:1}" '
                      '2>/dev/null; printf "%s\\n" "${COMPREPLY[@]}"; [[ -n ${COMPREPLY[0]} ]] || compgen -f -- "${@: -1}"')
            return output("bash", "-c", script, "bash", SHARE / "bash-completion/completions/quillet", *words).split("\n")[:-1]

        self.look(complete)

    @needs("fish")
    def test_fish(self):
        def complete(typed):
            with tempfile.TemporaryDirectory(prefix="quillet-fish-") as home:
                told = output("fish", "--no-config", "-c", f"source {SHARE}/fish/vendor_completions.d/quillet.fish; "
                              "complete -C $argv[1]", typed, env={**os.environ, "HOME": home})
            return [line.split("\t")[0] for line in told.splitlines()]

        self.look(complete)

    @needs("zsh")
    def test_zsh(self):
        # The only one that completes nowhere but at a terminal; it lists what it would offer.
        def complete(typed):
            with tempfile.TemporaryDirectory(prefix="quillet-zsh-") as home:
                pathlib.Path(home, ".zshrc").write_text(
                    f"fpath=({SHARE}/zsh/site-functions $fpath); autoload -U compinit; compinit -u -D\n"
                    "setopt no_beep no_auto_menu list_packed; PS1='> '; LISTMAX=1000; zstyle ':completion:*' verbose no\n"
                    "list() { zle list-choices; zle complete-word; print -n \"@@$BUFFER@@end@@\" }\n"
                    "zle -N list; bindkey '^L' list\n"
                    "zle-line-init() { print -n '@@ready@@' }; zle -N zle-line-init\n", encoding="utf-8")
                return typed_at_terminal(home, typed)

        self.look(complete)


def typed_at_terminal(home, typed):
    """What zsh lists behind the text, as words."""
    process, terminal = pty.fork()
    if process == 0:
        os.execvpe("zsh", ["zsh", "-i"], {**os.environ, "HOME": home, "ZDOTDIR": home, "TERM": "dumb", "COLUMNS": "200"})
    told = ""

    def until(mark, seconds=30):
        nonlocal told
        end = time.monotonic() + seconds
        while not re.search(mark, told, re.S) and time.monotonic() < end:
            if select.select([terminal], [], [], 0.2)[0]:
                told += os.read(terminal, 65536).decode(errors="replace")

    until("@@ready@@")
    os.write(terminal, f"{typed}\f".encode())
    # Behind the mark it lists what there is, if it's more than one, and writes the line again.
    until("@@end@@")
    os.write(terminal, b"#")
    until("@@end@@.*#")
    os.close(terminal)
    os.kill(process, 9)
    os.waitpid(process, 0)
    told = re.sub(r"\x1b\[[0-9;?]*[A-Za-z]", "", told)
    completed, listed = re.search("@@(?!ready|end)([^@]*)@@end@@(.*)", told, re.S).groups()
    # What is the only one isn't listed, but written.
    return " ".join(listed.splitlines()[1:-1]).split() or [re.split(r"(?<!\\) ", completed.strip())[-1]]


if __name__ == "__main__":
    unittest.main()
