#!/usr/bin/python3
"""Damages STEP files in six ways and tells what opens of them, in Quillet and with the bare kernel.

Each copy has a few bytes changed, is cut off, has references or numbers replaced, or lacks statements or has some twice. Of each
kind of damage it prints how many copies the kernel's own program opens, and how many Quillet opens without a word, opens with a
warning that says what is missing, and refuses; then the numbers of faces that the warnings tell. The seed repeats a run.

    Benchmarks/salvage.py [--count N] [--seed N] [--keep DIR] [--build DIR] FILE...
"""

import argparse
import collections
import pathlib
import random
import re
import subprocess
import sys
import tempfile

FEW = (1, 3, 10)
AT_A_TIME = 50
SECONDS = 60


def places(pattern, text, chance):
    """Some of the places where the pattern matches, from the last to the first, so that each can be replaced."""
    found = list(re.finditer(pattern, text))
    return sorted(chance.sample(found, min(len(found), chance.choice(FEW))), key=lambda match: -match.start())


def replaced(text, matches, new):
    for match in matches:
        text = text[:match.start()] + new(match) + text[match.end():]
    return text


def change_bytes(text, chance):
    changed = bytearray(text)
    for _ in range(chance.choice((1, 3, 10, 30))):
        changed[chance.randrange(len(changed))] = chance.randrange(32, 127)
    return bytes(changed)


def cut_off(text, chance):
    return text[:chance.randrange(len(text) // 10, len(text))]


def change_references(text, chance):
    known = re.findall(rb"#\d+", text)
    return replaced(text, places(rb"#\d+(?=[,)])", text, chance),
                    lambda _: chance.choice(known) if chance.random() < 0.7 else b"#%d" % chance.randrange(1, 10**7))


def change_numbers(text, chance):
    odd = (b"0.", b"-1.", b"1.E300", b"1.E30", b"-1.E12", b"NAN", b"1.E-300", b"99999999999.", b"")
    return replaced(text, places(rb"-?\d+\.\d*(E[+-]?\d+)?", text, chance), lambda _: chance.choice(odd))


def leave_out(text, chance):
    return replaced(text, places(rb"#\d+\s*=[^;]*;", text, chance), lambda _: b"")


def write_twice(text, chance):
    return replaced(text, places(rb"#\d+\s*=[^;]*;", text, chance), lambda match: match.group() * 2)


KINDS = {"bytes": change_bytes, "cut": cut_off, "references": change_references, "numbers": change_numbers,
         "left out": leave_out, "twice": write_twice}


def opens_in_kernel(program, file, folder):
    try:
        run = subprocess.run([program, file, folder / "out.stl"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=SECONDS,
                             check=False)
    except subprocess.TimeoutExpired:
        return False
    return run.returncode == 0


def answers_of(program, files, folder):
    """What one run of the program says of each file: "whole", "warned" or "refused", and its words."""
    arguments = [program, "--headless", "--keep-going", "--no-autorun", "--profile-dir", folder / "profile"]
    for file in files:
        arguments += ["--command", f'Document.Open "{file}"', "--command", "Document.CloseAll"]
    run = subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, errors="replace", check=False)
    if run.returncode not in (0, 1):
        sys.exit(f"{program} ended with {run.returncode}: {run.stderr}")
    for file in files:
        told = [line for line in (run.stdout + run.stderr).split("\n") if f'/{file.name}"' in line]
        refused = f'/{file.name}"' in run.stderr
        yield "refused" if refused else "warned" if told else "whole", " ".join(told)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="+", type=pathlib.Path, metavar="FILE")
    parser.add_argument("--count", type=int, default=300, metavar="N", help="copies in all (default: 300)")
    parser.add_argument("--seed", type=int, default=random.randrange(1, 100000), metavar="N")
    parser.add_argument("--keep", type=pathlib.Path, metavar="DIR", help="where the copies stay")
    parser.add_argument("--build", type=pathlib.Path, default=pathlib.Path("build/release"), metavar="DIR")
    options = parser.parse_args()
    print(f"seed {options.seed}")
    programs = options.build.resolve() / "root/bin"
    chance = random.Random(options.seed)
    with tempfile.TemporaryDirectory() as scratch:
        folder = options.keep or pathlib.Path(scratch)
        folder.mkdir(parents=True, exist_ok=True)
        texts = [(file.name, file.read_bytes()) for file in options.files]
        counts = {kind: collections.Counter() for kind in KINDS}
        copies, lost, named = [], 0, 0
        for number in range(options.count):
            name, text = texts[number % len(texts)]
            kind = list(KINDS)[number // len(texts) % len(KINDS)]
            copy = folder / f"{number:05d}-{kind.replace(' ', '-')}-{name}"
            copy.write_bytes(KINDS[kind](text, chance))
            copies.append((kind, copy))
            counts[kind]["kernel"] += opens_in_kernel(programs / "kernel_floor", copy, pathlib.Path(scratch))
        for begin in range(0, len(copies), AT_A_TIME):
            some = copies[begin:begin + AT_A_TIME]
            answers = answers_of(programs / "quillet", [copy.resolve() for _, copy in some], pathlib.Path(scratch))
            for (kind, _), (answer, words) in zip(some, answers):
                counts[kind][answer] += 1
                for some_faces, all_faces in re.findall(r"(\d+) of (\d+) faces? of", words):
                    lost, named = lost + int(some_faces), named + int(all_faces)
        print(f"{'damage':12}{'copies':>8}{'kernel':>8}{'whole':>8}{'warned':>8}{'refused':>8}")
        rows = {**counts, "all": sum(counts.values(), collections.Counter())}
        for kind, row in rows.items():
            total = row["whole"] + row["warned"] + row["refused"]
            print(f"{kind:12}{total:8}{row['kernel']:8}{row['whole']:8}{row['warned']:8}{row['refused']:8}")
        print(f"of the shells that lost faces, {lost} of {named} faces were left out")


if __name__ == "__main__":
    main()
