"""Run by growth.py inside the program: times lines on a model of N parts, and prints the times as JSON.

    quillet --headless --script lines.py -- WHAT N FOLDER [cpu]

WHAT is "parts" (a box and its copies, all of one name), "names" (as many parts, each with a name of its own), "documents",
"assets" or "files" (as many in the list of recent ones). With "cpu", times are processor time, that of ended workers too.
"""

import contextlib
import json
import os
import pathlib
import sys
import time

import quillet

STEPS = 7  # Of each single step; the middle one counts.
PIECE = 50_000  # Paths in one line, which may have a megabyte.
LARGE = 250_000  # Parts of which no STEP file is made: it takes many minutes.
ROW = 100_000  # Copies that one pattern makes at most.

what, count, folder = sys.argv[1], int(sys.argv[2]), pathlib.Path(sys.argv[3])
took = {}


def now():
    return time.process_time() if "cpu" in sys.argv[4:] else time.perf_counter()


def workers():
    """What child processes have used, those too for which the program hasn't waited yet."""
    if "cpu" not in sys.argv[4:]:
        return 0
    ticks = 0
    for child in pathlib.Path("/proc/thread-self/children").read_text().split():
        with contextlib.suppress(OSError):
            ticks += sum(map(int, pathlib.Path(f"/proc/{child}/stat").read_text().rpartition(")")[2].split()[11:13]))
    ended = os.times()
    return ended.children_user + ended.children_system + ticks / os.sysconf("SC_CLK_TCK")


def clock(line):
    start = now()
    quillet.run(line)
    return now() - start


def whole(name, *lines):
    """Something that is done to all: it may take as much longer as there is more."""
    start = workers()
    took["whole", name] = sum(map(clock, lines)) + workers() - start


def step(name, line, *back):
    """Something that is done to one: it should take what it takes however many there are. `line` may hold {}, for the
    number of the try; the lines after it put back what it did, and are timed as a step of their own."""
    tries = [[clock(each.format(number)) for each in (line, *back)] for number in range(1, STEPS + 1)]
    for label, times in zip((name, *(each.split()[0] for each in back)), zip(*tries)):
        took["step", label if label == name else f"{name}, {label}"] = sorted(times)[STEPS // 2]


def select(paths):
    """The lines that select all of them."""
    return [f"Selection.{'Add' if first else 'Select'} " + " ".join(paths[first:first + PIECE])
            for first in range(0, len(paths), PIECE)]


def file(name):
    return f'"{folder / name}"'


def change_one(path):
    step("Design.Move", f"Design.Move {path} 1 0 0", "VuCommands.UndoCmd", "VuCommands.RedoCmd", "VuCommands.UndoCmd")
    step("Design.Hide", f"Design.Hide {path}", f"Design.Show {path}")
    step("Design.Colour", f"Design.Colour Red {path}", "VuCommands.UndoCmd")
    step("Selection.Select", f"Selection.Select {path}", "Selection.List")
    step("VuCommands.RenameCommand", "VuCommands.RenameCommand Other{}", "VuCommands.UndoCmd")
    step("Script.Component", f"Script.Component {path}")
    step("Script.Body", f"Script.Body {path}/Body1")
    step("Design.Copy", f"Design.Copy {path} 0 0 50", "VuCommands.UndoCmd")
    step("Design.Box", "Design.Box 1 1 1", "VuCommands.UndoCmd")


def parts():
    clock("Design.New")
    clock("Design.Box 1 1 1")
    patterns = -(-count // ROW)
    row = count // patterns // 100 * 100
    pattern = f"Design.Pattern Box1 X 2 {row // 100} Y 2 100"
    whole("Design.Pattern", pattern, *[line for n in range(2, patterns + 1)
                                       for line in (f"Design.Box 1 1 1 0,0,{3 * n}", pattern.replace("Box1", f"Box{n}"))])
    whole("Design.Pattern, undone and redone", "VuCommands.UndoCmd", "VuCommands.RedoCmd")
    change_one(f"Box1:{row // 2}")
    everything = [f"Box{1 + n // row}:{1 + n % row}" for n in range(row * patterns)]
    whole("Selection.Select all, and List", *select(everything), "Selection.List")
    step("Selection.Remove of all", f"Selection.Remove {everything[row // 2]}", f"Selection.Add {everything[row // 2]}")
    whole("Design.Hide all, and back", "Design.Hide", "VuCommands.UndoCmd", "VuCommands.RedoCmd", "Design.ShowAll")
    whole("Design.Colour all, and back", "Script.BeginTransaction Red",
          *[line.replace("Selection.Select", "Design.Colour Red").replace("Selection.Add", "Design.Colour Red")
            for line in select(everything)], "Script.CommitTransaction", "VuCommands.UndoCmd")
    whole("delete half of the copies, and back", *select(everything[::2]), "Commands.Start DeleteCommand",
          "VuCommands.UndoCmd", "VuCommands.RedoCmd", "VuCommands.UndoCmd")
    whole("delete the pattern, and back", f"Selection.Select Box1:{row // 2}", "Commands.Start DeleteCommand",
          "VuCommands.UndoCmd")
    whole("Model.Digest", "Model.Digest")
    whole("checks of all", "Component.CheckCount count", "Body.CheckVolume volume", "Body.CheckArea area",
          "Body.CheckBounds bounds", "Model.CheckDigest digest")
    suffixes = ["tdsn", "glb", "stl", "obj"] if count > LARGE else ["tdsn", "stp", "glb", "stl", "obj"]
    for suffix in suffixes:
        whole(f"save .{suffix}", f"Design.Export {file('parts.' + suffix)}" if suffix != "tdsn"
              else f"Document.SaveAs {file('parts.tdsn')}")
    clock("Document.CloseAll")
    for suffix in (each for each in suffixes if each not in ("stl", "obj")):
        whole(f"open .{suffix}", f"Document.Open {file('parts.' + suffix)}")
        clock("Document.CloseAll")


def names():
    clock("Design.New")
    clock('Script.BeginTransaction "Boxes"')
    whole("Design.Box for each", *[f"Design.Box 1 1 1 {2 * n},0,0" for n in range(count)])
    clock("Script.CommitTransaction")
    change_one(f"Box{count // 2}")
    whole("delete half", *select([f"Box{n}" for n in range(1, count, 2)]), "Commands.Start DeleteCommand", "VuCommands.UndoCmd")


def documents():
    whole("make and close documents", *["VuCommands.NewSingleDocumentCmd"] * count, "Document.CloseAll")


def assets():
    clock("Design.New")
    whole("Asset.Create for each", *["Asset.Create VeloraAssetType"] * count)
    whole("Asset.List", "Asset.List")
    step("Asset.Create", "Asset.Create VeloraAssetType")


def files():
    clock("Design.New")
    clock("Design.Box 1 1 1")
    clock(f"Document.SaveAs {file('first.tdsn')}")
    for number in range(count):
        os.link(folder / "first.tdsn", folder / f"{number}.tdsn")
    clock("Document.CloseAll")
    whole("Document.Open for each", *[line for number in range(count)
                                      for line in (f"Document.Open {file(f'{number}.tdsn')}", "Document.CloseAll", "Script.Settle")])


globals()[what]()
print("GROWTH " + json.dumps([[kind, name, seconds] for (kind, name), seconds in took.items()]))
