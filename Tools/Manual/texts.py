"""What the program tells of itself, for the pages and completions that are made of it."""

import collections
import json
import re
import subprocess
import tempfile

Option = collections.namedtuple("Option", "name value help")
Line = collections.namedtuple("Line", "area name usage help definition")


def listed(program, what):
    """The objects that `program --list-<what>` prints, one a line."""
    ran = subprocess.run([program, f"--list-{what}"], check=True, capture_output=True, text=True)
    return [json.loads(line) for line in ran.stdout.splitlines()]


def options(program):
    return [Option(each["name"], each["value"], each["help"]) for each in listed(program, "options")]


# The parameters and flags that a line's help begins with: <text>, [...] around what may be left out, A|B, ..., /Name.
INNER = r"\[[^\[\]]*\]"
NESTED = rf"\[(?:[^\[\]]|{INNER})*\]"
WORD = rf"(?:\[(?:[^\[\]]|{NESTED})*\](?:\.\.\.)?|<[^>]*>(?:\|<[^>]*>|\.\.\.)?|/\w+|\w+(?:\|\w+)+)"
USAGE = re.compile(rf"\s*({WORD}(?:\s+{WORD})*)?\s*(.*)", re.S)


def lines(program):
    """Sorted by area and name."""
    all_lines = []
    for each in listed(program, "commands"):
        usage, told = USAGE.fullmatch(each["help"]).groups()
        all_lines.append(Line(each["area"], each["name"], usage or "", told, each.get("definition", "")))
    return sorted(all_lines)


def choices(value):
    """Of "a|b|c"; nothing of "FILE"."""
    return value.split("|") if "|" in value else []


def answer(program, line):
    """What a line answers in a run that has no settings of anybody's."""
    with tempfile.TemporaryDirectory(prefix="quillet-asked-") as profile:
        ran = subprocess.run([program, "--headless", "--no-autorun", "--profile-dir", profile, "--command", line], check=True,
                             capture_output=True, text=True)
    return ran.stdout
