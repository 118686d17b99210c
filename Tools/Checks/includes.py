#!/usr/bin/python3
"""Holds the order of the house: who may include whom, and where things stand.

    includes.py           fails at an include that runs upwards between rooms, or into another part's private headers; at a
                          circle of includes that has grown too large; and at members of a class that are defined
                          elsewhere than in the .cpp beside its header
    includes.py --circles prints the circles of includes within the rooms, the largest first

Rooms are folders; a folder that isn't named belongs to the nearest one above it. They stand below from the bottom upwards,
and a file includes only its own room and those before it. Rooms in one line are one room for this purpose: they know each
other. A header below a folder Private/, or in a closed room, may be included only from its own part of the house: the library or
add-in that the first folders of its path name. Tests and benchmarks may include everything.
"""

import argparse
import collections
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]

ROOMS = [
    ["Server/Geometry"],
    ["Server/Base"],
    ["Server/Base/Python"],
    ["Server/AddInMgr"],
    ["Server/Body", "Server/Component"],
    ["Server/Types"],
    # The model, what is selected in it, and how it is kept are one library that hides the kernel.
    ["Server/DataModel"],
    ["Server/DataModel/Kernel"],
    ["Server/Translate"],
    ["Server/Thumbnailer"],
    ["Server/Scene", "Server/CommonData"],
    ["Server/Scene/Rendra"],
    ["Server/Dimension"],
    ["Server/Network"],
    ["Server/Skyvault"],
    ["Server/Skyvault/Client"],
    ["Server/Itemhub"],
    ["Server/Itemhub/Client"],
    ["Services/Itemhub/Http"],
    ["Services/Itemhub/Blobs"],
    ["Services/Itemhub/Store"],
    ["Services/Itemhub/Config"],
    ["Services/Itemhub/Access"],
    ["Services/Itemhub/Routes"],
    ["Services/Itemhub/Admin"],
    ["Services/Itemhub"],
    ["Tools"],
    ["UI/Base/Command"],
    ["UI/Base/Program"],
    ["UI/Base/Workspace"],
    ["UI/Base/View"],
    ["UI/Base/Session"],
    ["UI/Base/Script"],
    ["UI/Base/Validation"],
    ["UI/Base/Lines"],
    ["UI/Base/Window"],
    ["UI/Base"],
    ["UI/Commands"],
    ["UI/Commands/Adaptations"],
    ["UI/Design"],
    ["UI/Application"],
]

# Every header of these is private to its part.
CLOSED = [
    "Server/Base/Python",
    "Server/DataModel/Exchange",
    "Server/DataModel/Kernel",
    "Server/DataModel/Model",
    "Server/DataModel/Native",
    "Server/Scene/Rendra",
    "Server/Itemhub/Client",
    "Server/Skyvault/Client",
    "Server/Translate",
    "Server/Thumbnailer",
    "Services/Itemhub",
    "UI/Application",
    "UI/Base/Lines",
    "UI/Base/Window",
    "UI/Design",
]

# The public faces of closed rooms.
PUBLIC = {
    "Server/Scene/Rendra/DriverGuard.h",
    "Server/Scene/Rendra/DriverReset.h",
    "Server/Scene/Rendra/Renderer.h",
    "UI/Base/Window/Accessible.h",
    "UI/Base/Window/Glyph.h",
    "UI/Base/Window/QtIcon.h",
    "UI/Base/Window/PlainText.h",
    "UI/Base/Window/Theme.h",
}

# What shares private headers, where that is more than the first two folders of a path.
PARTS = {
    "Server/Body": "Server/DataModel",
    "Server/Component": "Server/DataModel",
    "Server/Types": "Server/DataModel",
    "Server/Translate": "Server/DataModel",
    "Server/Thumbnailer": "Server/DataModel",
    "Server/CommonData": "Server/Scene",
    "Server/Dimension": "Server/Scene",
}

# Each with its reason.
ALLOWED = {
}

FREE = ("Tests/", "Benchmarks/")
# Pairs of header and source. The largest that there is, the command model, whose classes make and hold each other.
LARGEST_CIRCLE = 13

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')
NO_CODE = re.compile(r"""//.*|/\*[\s\S]*?\*/|'(?:\\.|[^'\\])'|"(?:\\.|[^"\\\n])*["]""")
CLASS = re.compile(r"^[ ]*(?:class|struct)\s+(?:\[\[\w+\]\]\s*)?(\w+)(?:\s+final)?\s*(?::[^;{}]*)?\{", re.MULTILINE)
MEMBER = re.compile(r"^(?!\s|class |struct |enum |using |namespace |return )(?:[\w:<>,&*\[\] ]+[ &*>\]])?((?:\w+::)+)"
                    r"(?:~?\w+|operator\S+?)\s*[({=]", re.MULTILINE)


def room_of(path):
    """The number of the innermost room that a file stands in."""
    best, length = None, -1
    for number, folders in enumerate(ROOMS):
        for folder in folders:
            if path.startswith(folder + "/") and len(folder) > length:
                best, length = number, len(folder)
    return best


def part_of(path):
    first_two = "/".join(path.split("/")[:2])
    return PARTS.get(first_two, first_two)


def is_private(path):
    return "/Private/" in path or path not in PUBLIC and any(path.startswith(folder + "/") for folder in CLOSED)


def files():
    listed = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard", "*.h", "*.cpp"], cwd=ROOT,
                                     text=True)
    return [path for path in listed.splitlines() if (ROOT / path).is_file()]


def includes(path):
    for number, line in enumerate((ROOT / path).read_text().splitlines(), 1):
        if found := INCLUDE.match(line):
            yield number, found.group(1)


def faults():
    known = set(files())
    for path in sorted(known):
        if path.startswith(FREE):
            continue
        room = room_of(path)
        if room is None:
            yield f"{path}:1: stands in no room: name its folder in {pathlib.Path(__file__).name}"
            continue
        for number, included in includes(path):
            place = f"{path}:{number}"
            if (path, included) in ALLOWED:
                continue
            if included not in known:
                yield f'{place}: there is no "{included}" (paths begin at the top of the project)'
            elif is_private(included) and part_of(included) != part_of(path):
                yield f'{place}: "{included}" is private to {part_of(included)}'
            elif (room_of(included) or 0) > room:
                yield f'{place}: runs upwards, from {"/".join(path.split("/")[:-1])} to "{included}"'


def circles():
    """The circles among pairs of a header and its source, by Tarjan's algorithm."""
    graph = collections.defaultdict(set)
    for path in files():
        if not path.startswith(FREE):
            unit = path.rsplit(".", 1)[0]
            graph[unit].update(other for _, included in includes(path)
                               if (other := included.rsplit(".", 1)[0]) != unit)
    index, low, stack, found = {}, {}, [], []

    def visit(unit):
        index[unit] = low[unit] = len(index)
        stack.append(unit)
        for other in graph.get(unit, ()):
            if other not in index:
                visit(other)
                low[unit] = min(low[unit], low[other])
            elif other in stack:
                low[unit] = min(low[unit], index[other])
        if low[unit] == index[unit]:
            circle = stack[stack.index(unit):]
            del stack[stack.index(unit):]
            if len(circle) > 1:
                found.append(sorted(circle))

    sys.setrecursionlimit(100_000)
    for unit in list(graph):
        if unit not in index:
            visit(unit)
    return sorted(found, key=len, reverse=True)


def large_circles():
    for circle in circles():
        if len(circle) > LARGEST_CIRCLE:
            yield f'{circle[0]}.h:1: {len(circle)} files include each other in a circle: {" ".join(circle)}'


def strays():
    """Members of a header's classes that another .cpp defines than the one beside the header. A .cpp knows the header that
    declares a class, or has its own header know it."""
    known = {path for path in files() if not path.startswith(FREE)}
    defined = collections.defaultdict(dict)
    for path in sorted(known):
        if path.endswith(".cpp"):
            code = NO_CODE.sub("", (ROOT / path).read_text())
            for found in MEMBER.finditer(code):
                line = code.count("\n", 0, found.start()) + 1
                for name in found.group(1).split("::")[:-1]:
                    defined[name].setdefault(path, line)
    included = {path: {header for _, header in includes(path)} for path in known}
    for header in sorted(path for path in known if path.endswith(".h")):
        beside = header[:-2] + ".cpp"
        for found in CLASS.finditer(NO_CODE.sub("", (ROOT / header).read_text())):
            for path, line in defined.get(found.group(1), {}).items():
                if path != beside and (header in included[path] or header in included.get(path[:-4] + ".h", ())):
                    yield f'{path}:{line}: defines members of {found.group(1)}, whose header is "{header}"'


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--circles", action="store_true")
    if parser.parse_args().circles:
        for circle in circles():
            print(len(circle), " ".join(circle))
        return 0
    found = [*faults(), *large_circles(), *strays()]
    print("\n".join(found), end="\n" if found else "", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
