#!/usr/bin/python3
"""Damages STEP and IGES files in six ways and tells what opens of them, in Quillet and with the bare kernel.

Each copy has a few bytes changed, is cut off, has references or numbers replaced, or lacks statements (in IGES, entries of the directory or parameters) or has some twice. Of each
kind of damage it prints how many copies the kernel's own program opens, and how many Quillet opens without a word, opens with a
warning that says what is missing, and refuses; then the numbers of faces that the warnings tell. The seed repeats a run.

    Benchmarks/salvage.py [--count N] [--seed N] [--keep DIR] [--kind KIND] [--no-kernel] [--build DIR] FILE...
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
ODD_NUMBERS = (b"0.", b"-1.", b"1.E300", b"1.E30", b"-1.E12", b"NAN", b"1.E-300", b"99999999999.", b"")


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
    return replaced(text, places(rb"-?\d+\.\d*(E[+-]?\d+)?", text, chance), lambda _: chance.choice(ODD_NUMBERS))


def leave_out(text, chance):
    return replaced(text, places(rb"#\d+\s*=[^;]*;", text, chance), lambda _: b"")


def write_twice(text, chance):
    return replaced(text, places(rb"#\d+\s*=[^;]*;", text, chance), lambda match: match.group() * 2)


def lines_of(text, section):
    """The places of the lines of a section of an IGES file, each without its line's end."""
    return [match for match in re.finditer(rb"[^\r\n]+", text) if match.group()[72:73] == section]


def in_columns(pattern, new, columns):
    """A function that replaces one match in the data of a line, whose columns stay where they are."""
    def change(match, chance):
        line = match.group()
        data = line[:columns]
        found = list(re.finditer(pattern, data))
        if not found:
            return line
        place = chance.choice(found)
        data = data[:place.start()] + new(place, chance) + data[place.end():]
        return data[:columns].ljust(columns) + line[columns:]
    return change


def change_lines(text, chance, lines, change):
    some = sorted(chance.sample(lines, min(len(lines), chance.choice(FEW))), key=lambda match: -match.start())
    return replaced(text, some, lambda match: change(match, chance))


def change_iges_references(text, chance):
    """Of the directory, of the parameters, and the numbers of lines."""
    count = len(lines_of(text, b"D"))
    def other(place, chance):
        number = chance.randrange(1, count, 2) if chance.random() < 0.7 else chance.randrange(1, 10**7)
        return b"%*d" % (len(place.group()), number)
    def of_line(match, chance):
        line = match.group()
        return line[:73] + b"%7d" % chance.randrange(1, 10**6) if chance.random() < 0.7 else line[:72] + b"X" + line[73:]
    ways = (("D", in_columns(rb" *\d+", other, 64)), ("P", in_columns(rb"(?<=,)\d+(?=[,;])", other, 64)), ("P", of_line), ("D", of_line))
    section, way = chance.choice(ways[:2] * 3 + ways)
    return change_lines(text, chance, lines_of(text, section.encode()), way)


def change_iges_numbers(text, chance):
    pattern = rb"-?\d+\.\d*([ED][+-]?\d+)?"
    lines = [line for line in lines_of(text, b"P") if re.search(pattern, line.group()[:64])]
    return change_lines(text, chance, lines, in_columns(pattern, lambda _, chance: chance.choice(ODD_NUMBERS), 64))


def iges_pieces(text, chance):
    """Some entries of the directory, or the parameters of some entities."""
    if chance.random() < 0.5:
        lines = lines_of(text, b"D")
        pieces = [(one.start(), other.end() + 1) for one, other in zip(lines[::2], lines[1::2])]
    else:
        spans = {}
        for line in lines_of(text, b"P"):
            begin, _ = spans.get(line.group()[64:72], (line.start(), 0))
            spans[line.group()[64:72]] = (begin, line.end() + 1)
        pieces = list(spans.values())
    return sorted(chance.sample(pieces, min(len(pieces), chance.choice(FEW))), reverse=True)


def leave_out_of_iges(text, chance):
    for begin, end in iges_pieces(text, chance):
        text = text[:begin] + text[end:]
    return text


def write_twice_in_iges(text, chance):
    for begin, end in iges_pieces(text, chance):
        text = text[:end] + text[begin:end] + text[end:]
    return text


KINDS = {"bytes": change_bytes, "cut": cut_off, "references": change_references, "numbers": change_numbers,
         "left out": leave_out, "twice": write_twice}
IGES_KINDS = {**KINDS, "references": change_iges_references, "numbers": change_iges_numbers, "left out": leave_out_of_iges,
              "twice": write_twice_in_iges}


def damaged(name, text, kind, chance):
    return (IGES_KINDS if name.lower().endswith((".igs", ".iges")) else KINDS)[kind](text, chance)


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
    parser.add_argument("--kind", choices=KINDS, help="only this kind of damage")
    parser.add_argument("--no-kernel", dest="kernel", action="store_false", help="Quillet alone")
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
            kind = options.kind or list(KINDS)[number // len(texts) % len(KINDS)]
            copy = folder / f"{number:05d}-{kind.replace(' ', '-')}-{name}"
            copy.write_bytes(damaged(name, text, kind, chance))
            copies.append((kind, copy))
            if options.kernel:
                counts[kind]["kernel"] += opens_in_kernel(programs / "kernel_floor", copy, pathlib.Path(scratch))
        for begin in range(0, len(copies), AT_A_TIME):
            some = copies[begin:begin + AT_A_TIME]
            answers = answers_of(programs / "quillet", [copy.resolve() for _, copy in some], pathlib.Path(scratch))
            for (kind, _), (answer, words) in zip(some, answers):
                counts[kind][answer] += 1
                for some_faces, all_faces in re.findall(r"lacks (\d+) of (\d+) faces?", words):
                    lost, named = lost + int(some_faces), named + int(all_faces)
        print(f"{'damage':12}{'copies':>8}{'kernel':>8}{'whole':>8}{'warned':>8}{'refused':>8}")
        rows = {**counts, "all": sum(counts.values(), collections.Counter())}
        for kind, row in rows.items():
            total = row["whole"] + row["warned"] + row["refused"]
            print(f"{kind:12}{total:8}{row['kernel']:8}{row['whole']:8}{row['warned']:8}{row['refused']:8}")
        print(f"of the shells that lost faces, {lost} of {named} faces were left out")


if __name__ == "__main__":
    main()
