#!/usr/bin/python3
"""Looks at the sources without building them, in a few seconds.

    sources.py [CHECK...]   runs all checks, or those that are named, and fails if one of them does
    sources.py --list       names the checks

A check whose program is not installed fails; cmake/packages-check.txt has the packages.
"""

import argparse
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]

# The file names of a check are patterns of git's; where it has none, its program finds its files itself.
CHECKS = {
    "includes": (["Tools/Checks/includes.py"], []),
    "plain_texts": (["Tools/Checks/plain_texts.py"], []),
    "format": (["clang-format", "--dry-run", "--Werror"], ["*.cpp", "*.h"]),
    # Not in German texts, drawings and the licence; nor in inputs of tests that are bytes made by chance.
    "spelling": (["codespell"], [":!*.po", ":!*.svg", ":!*.desktop", ":!*.metainfo.xml", ":!*.lintian-overrides",
                               ":!Docs/erste-schritte.md", ":!LICENSE", ":!Tests/Fuzz/*/*"]),
    "shell": (["shellcheck", "--shell=bash", "--external-sources"], ["run", "check", ".ci/run", "Packaging/packages", "Packaging/try-build", "Packaging/try-packages", "Packaging/try-twice", "*.sh"]),
    "desktop": (["desktop-file-validate"], ["*.desktop"]),
    "description": (["appstreamcli", "validate", "--no-net"], ["*.metainfo.xml"]),
}


def files(patterns):
    listed = subprocess.check_output(["git", "ls-files", "-z", "-co", "--exclude-standard", "--", *patterns], cwd=ROOT,
                                     text=True)
    return [path for path in listed.split("\0") if path and (ROOT / path).is_file()]


def passes(name):
    command, patterns = CHECKS[name]
    if not shutil.which(command[0], path=None) and not (ROOT / command[0]).is_file():
        print(f"{command[0]} is not installed", file=sys.stderr)
        return False
    return subprocess.run(command + (files(patterns) if patterns else []), cwd=ROOT).returncode == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("checks", nargs="*", metavar="CHECK")
    parser.add_argument("--list", action="store_true")
    arguments = parser.parse_args()
    if arguments.list:
        print("\n".join(CHECKS))
        return 0
    if unknown := set(arguments.checks) - set(CHECKS):
        parser.error(f"there is no check {', '.join(sorted(unknown))}; the checks are {', '.join(CHECKS)}")
    failed = [name for name in arguments.checks or CHECKS if not passes(name)]
    if failed:
        print(f"The sources fail: {', '.join(failed)} (Tools/Checks/sources.py {' '.join(failed)})", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
