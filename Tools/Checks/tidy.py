#!/usr/bin/python3
"""Looks for mistakes with clang-tidy; what it looks for stands in the file .clang-tidy.

    tidy.py           the sources that changed since the branch left origin/main, or, where that is the newest
                      commit itself, in the last five commits; what isn't committed yet counts as well
    tidy.py --limit N the same, but only the N that changed last
    tidy.py --all     every source under Server, Services, UI and Tools
    tidy.py FILE...   these sources

A header is looked at with the source beside it, and with all that include it where they are looked at. Each finding is
printed once, and any of them makes this fail. A source that was clean before is skipped until it changes, or one of our
headers that it includes, or what clang-tidy looks for. Where clang-tidy itself crashes in one of its checks, the source is
looked at again without that check, and a notice says so.
"""

import argparse
import collections
import concurrent.futures
import functools
import hashlib
import json
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build/tidy"
CLEAN = BUILD / "clean"
FOLDERS = ("Server/", "Services/", "UI/", "Tools/")
# One version for everybody: each finds other things.
TIDY = "clang-tidy-16"
RECENT = 5
AT_A_TIME = 2

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
# What it says of headers and is wrong about.
MISTAKEN = (
    # The class has an operator delete of its own, whose argument is taken for something that was freed already.
    (re.compile(r"/QtCore/qsharedpointer_impl\.h$"), "clang-analyzer-cplusplus.NewDelete"),
    # What is to be called goes over to a function of Qt, which isn't seen.
    (re.compile(r"/QtCore/qtimer\.h$"), "clang-analyzer-cplusplus.NewDeleteLeaks"),
    # The kernel's handles and ours count their references, which it loses sight of.
    (re.compile(r"/opencascade/|/Server/Base/StrongRef\.h$"), "clang-analyzer-cplusplus.NewDelete"),
)
CRASH = re.compile(r"Processing '(?P<check>[\w.-]+)' against")
FINDING = re.compile(r"^(?P<path>/[^:]+):(?P<line>\d+):(?P<column>\d+): (?:warning|error): .*\[(?P<check>[^\]]+)\]$")


def git(*arguments):
    result = subprocess.run(["git", *arguments], cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return result.stdout.split("\n") if result.returncode == 0 else []


def is_ours(path):
    return path.startswith(FOLDERS) and path.endswith((".cpp", ".h")) and (ROOT / path).is_file()


def base_of_changes():
    head = git("rev-parse", "HEAD")[0]
    fork = (git("merge-base", "HEAD", "origin/main") or [head])[0]
    if fork != head:
        return fork
    recent = [line for line in git("rev-list", "--first-parent", f"--max-count={RECENT + 1}", "HEAD") if line]
    return recent[-1]


def changed_files():
    """What changed last comes first."""
    committed = git("log", "--format=", "--name-only", "--no-renames", f"{base_of_changes()}..HEAD")
    return git("ls-files", "-om", "--exclude-standard") + git("diff", "--name-only", "--cached") + committed


def sources_of(paths):
    """The sources among these, and those beside the headers among these, in the order in which they come first."""
    sources = dict.fromkeys(str(pathlib.PurePath(path).with_suffix(".cpp")) for path in paths if is_ours(path))
    return list(filter(is_ours, sources))


def commands():
    """How each source is compiled; one that several targets share stands here once, so that it is looked at once."""
    subprocess.run(["cmake", "--preset", "tidy"], cwd=ROOT, stdout=subprocess.DEVNULL, check=True)
    entries = json.loads((BUILD / "compile_commands.json").read_text())
    single = {entry["file"]: entry for entry in reversed(entries)}
    folder = BUILD / "single"
    folder.mkdir(exist_ok=True)
    (folder / "compile_commands.json").write_text(json.dumps(list(single.values()), indent=1))
    return folder, {str(pathlib.Path(file).relative_to(ROOT)): entry["command"] for file, entry in single.items()}


@functools.cache
def text_of(path):
    return (ROOT / path).read_text()


def with_headers(path):
    """A source and all of our headers that it includes, directly or not."""
    found, waiting = set(), [path]
    while waiting:
        path = waiting.pop()
        if path not in found and (ROOT / path).is_file():
            found.add(path)
            waiting += INCLUDE.findall(text_of(path))
    return sorted(found)


def digest(path, command, what):
    parts = [what, command.replace(str(ROOT), "")] + [part for name in with_headers(path) for part in (name, text_of(name))]
    return hashlib.sha256("\0".join(parts).encode()).hexdigest()


def run_tidy(folder, path):
    """Without the checks in which clang-tidy crashes here."""
    without = []
    while True:
        checks = [f"--checks={','.join(without)}"] if without else []
        result = subprocess.run([TIDY, "--quiet", *checks, "-p", folder, ROOT / path], cwd=ROOT, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        crash = CRASH.search(result.stderr) if result.returncode < 0 else None
        if not crash or f"-{crash['check']}" in without:
            return result
        without.append(f"-{crash['check']}")
        print(f"NOTICE: {path}: {TIDY} crashes in {crash['check']}, and looks at it without", flush=True)


def look_at(folder, path):
    """The findings in a source and its headers: for each its place and check, and the text to print."""
    result = run_tidy(folder, path)
    findings, block = {}, []
    for line in result.stdout.splitlines():
        if match := FINDING.match(line):
            block = findings.setdefault(match.groups(), [])
        block.append(line.replace(f"{ROOT}/", ""))
    mistaken = [key for key in findings if any(place.search(key[0]) and check == key[-1] for place, check in MISTAKEN)]
    for key in mistaken:
        del findings[key]
    if result.returncode != 0 and not findings and not mistaken:
        findings[(path, "", "", TIDY)] = [f"{path}: {TIDY} failed:", result.stdout, result.stderr]
    return {key: "\n".join(lines) for key, lines in findings.items()}


def unseen(sources, how, what):
    """Those that weren't clean yet as they are now, each with the name of the mark that says so."""
    marks = {path: CLEAN / digest(path, how[path], what) for path in sources}
    return {path: mark for path, mark in marks.items() if not mark.exists()}


def check(sources):
    folder, how = commands()
    findings = {}
    for path in [path for path in sources if path not in how]:
        findings[(path, "", "", "no target")] = f"{path}: belongs to no target"
        print(f"{path}: belongs to no target", flush=True)
    version = subprocess.run([TIDY, "--version"], stdout=subprocess.PIPE, text=True, check=True).stdout
    marks = unseen([path for path in sources if path in how], how, version + text_of(".clang-tidy"))
    CLEAN.mkdir(exist_ok=True)
    with concurrent.futures.ThreadPoolExecutor(AT_A_TIME) as pool:
        jobs = {pool.submit(look_at, folder, path): path for path in marks}
        for number, job in enumerate(concurrent.futures.as_completed(jobs), 1):
            found = job.result()
            if not found:
                marks[jobs[job]].touch()
            for key, text in found.items():
                if key not in findings:
                    findings[key] = text
                    print(text, flush=True)
            if sys.stderr.isatty():
                print(f"{number} of {len(jobs)}", end="\r", file=sys.stderr)
    print(f"{TIDY}: {len(sources)} sources, {len(marks)} of them changed, {len(findings)} findings", file=sys.stderr)
    for name, count in collections.Counter(key[-1] for key in findings).most_common():
        print(f"{count:6} {name}", file=sys.stderr)
    return 1 if findings else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--limit", type=int, metavar="N")
    parser.add_argument("files", nargs="*", metavar="FILE")
    arguments = parser.parse_args()
    if not shutil.which(TIDY):
        print(f"{TIDY} is missing", file=sys.stderr)
        return 2
    if arguments.all:
        paths = git("ls-files", "-co", "--exclude-standard", *FOLDERS)
    elif arguments.files:
        paths = [str(pathlib.Path(file).resolve().relative_to(ROOT)) for file in arguments.files]
    else:
        paths = changed_files()
    sources = sources_of(paths)
    if arguments.limit is not None and len(sources) > arguments.limit:
        print(f"{len(sources) - arguments.limit} more sources changed that are not looked at (--limit)", file=sys.stderr)
    return check(sources[:arguments.limit])


if __name__ == "__main__":
    sys.exit(main())
