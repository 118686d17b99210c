"""Checks the main of all programs of tests: what it makes of tests that crash, and that nothing of the user's reaches a test.

    check_main.py PROBE [PROGRAM FILTER]...

PROBE is the program of MainProbe.cpp. Of each PROGRAM, the tests that FILTER selects are run where the user's folders are as
bad as they can be; they must pass, change nothing there and leave nothing in the temporary folder.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROBE, *SUITES = sys.argv[1:]
NOBODY = 65534
# What a user's folders may hold at worst, below their home.
JUNK = {
    ".config/quillet/UIBase.json": '{"wantToShowBrowser": false, "showDebugDialog": true, "theme": 7}',
    ".config/quillet/Graphics.json": '{"visualStyle": 99, "MSAA": false, "showLayoutGrid": true',
    ".config/quillet/Units.json": '{"lengthUnit": "in", "generalPrecision": 0}',
    ".config/quillet/RecentDocuments.json": '{"paths": ["/nowhere/a.vlra", ""]}',
    ".config/quillet/VULastDisplayedLayout.xml": "<Layout><",
    ".config/quillet/console_history": "Quit\n",
    ".cache/quillet/import": "not a folder",
    ".local/share/quillet/scripts/autorun/first.py": "raise SystemExit('the user has scripts')",
    ".local/lib/python3.11/site-packages/usercustomize.py": "raise SystemExit('the user has Python modules')",
    ".local/state/quillet/recovery/broken.vlra": "not a package",
}


def run(command, environment=None):
    return subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace")


def write(folder, files):
    for name, text in files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text)


def content(folder):
    """Everything below the folder, by path."""
    return {str(path): path.read_bytes() if path.is_file() else None for path in folder.rglob("*")}


class Main(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        os.chmod(scratch.name, 0o755)
        self.temporary = pathlib.Path(scratch.name) / "tmp"
        self.home = pathlib.Path(scratch.name) / "home"
        self.temporary.mkdir(mode=0o1777)
        self.temporary.chmod(0o1777)
        self.home.mkdir()
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("XDG_", "QUILLET_SEED", "GTEST_"))}
        self.environment.update(TMPDIR=str(self.temporary), HOME=str(self.home))

    def probe(self, *options, **environment):
        result = run([PROBE, *options], self.environment | environment)
        self.assertEqual(content(self.temporary), {})
        return result.returncode, result.stdout

    def suites_pass(self, before=()):
        kept = content(self.temporary) | content(self.home)
        for program, tests in zip(SUITES[::2], SUITES[1::2]):
            result = run([*before, program, "--gtest_filter=" + tests], self.environment)
            self.assertEqual(result.returncode, 0, result.stdout)
            self.assertRegex(result.stdout, r"\[  PASSED  \] [1-9]")
        self.assertEqual(content(self.temporary) | content(self.home), kept)

    def test_a_crash_costs_one_test_and_is_reported_by_name(self):
        for shards in ({}, {"GTEST_TOTAL_SHARDS": "1", "GTEST_SHARD_INDEX": "0"}):
            code, output = self.probe(**shards)
            self.assertEqual(code, 1)
            crashes = set(re.findall(r"\[  CRASHED \] (.*)", output))
            self.assertEqual(crashes, {"Probe.Crashes (Segmentation fault)", "Probe.CrashesAsWell (Aborted)",
                                       "Probe.EndsTheProcess (exit code 0)"})
            for test in ("Passes", "LeavesFilesBehind"):
                self.assertEqual(output.count("OK ] Probe." + test), 1, output)
        self.assertEqual(self.probe("--gtest_filter=Probe.Passes")[0], 0)

    def test_the_seed_is_printed_given_by_the_variable_and_by_the_option(self):
        seen = "--gtest_filter=Probe.LeavesFilesBehind"
        for seed, code, output in (("4", *self.probe(seen, QUILLET_SEED="4")),
                                   ("5", *self.probe(seen, "--gtest_random_seed=5", QUILLET_SEED="4"))):
            self.assertEqual(code, 0)
            self.assertIn(f"QUILLET_SEED={seed}\n", output)
            self.assertIn(f"\nseed {seed}\n", output)
        for wrong in ("", "x", "0", "100000"):
            self.assertEqual(self.probe(QUILLET_SEED=wrong)[0], 2)
        self.assertNotIn("Randomizing", self.probe(seen, "--gtest_shuffle=0")[1])

    def test_folders_that_a_killed_process_left_are_removed(self):
        write(self.temporary / "quillet-run-killed", {"home/a": ""})
        self.probe("--gtest_filter=Probe.Passes")

    def test_suites_pass_in_a_home_full_of_junk(self):
        write(self.home, JUNK)
        for metric in ("ElapsedTime", "PhysicalMemory", "PrehighlightSelect"):
            write(self.temporary / f"quillet-{os.getuid()}", {f"{metric}.txt": "typed before\n"})
            write(self.home / ".run/quillet", {f"{metric}.txt": "typed before\n"})
        (self.home / ".run").chmod(0o700)
        write(self.temporary, {"quillet-run-file": "junk"})
        for variable, folder in (("CONFIG_HOME", ".config"), ("CACHE_HOME", ".cache"), ("DATA_HOME", ".local/share"),
                                 ("STATE_HOME", ".local/state"), ("RUNTIME_DIR", ".run")):
            self.environment["XDG_" + variable] = str(self.home / folder)
        self.environment.update(LANG="de_DE.UTF-8", LANGUAGE="de", LC_ALL="de_DE.UTF-8")
        self.suites_pass()

    def test_suites_pass_without_a_home(self):
        del self.environment["HOME"]
        self.suites_pass()

    def test_suites_pass_for_an_unprivileged_user_whose_home_is_not_writable(self):
        self.home.chmod(0o555)
        as_nobody = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        before = as_nobody if os.getuid() == 0 else []
        if run([*before, PROBE, "--gtest_list_tests"]).returncode:
            self.skipTest("NOTICE: other users cannot read this build")
        self.suites_pass(before)


unittest.main(argv=sys.argv[:1])
