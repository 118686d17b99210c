#!/usr/bin/python3
"""Writes the manual pages quillet(1) and quillet-lines(7), from the lists of the program.

    manpages.py PROGRAM METAINFO FOLDER

METAINFO is the description for software centres, which knows version and date; FOLDER gets man1 and man7.
"""

import datetime
import itertools
import pathlib
import re
import sys
import textwrap
import xml.etree.ElementTree

import texts

WIDTH = 72

EXIT = (("0", "All went well."),
        ("1", "A line failed, a file could not be opened, a recording could not be written to its end, or a value was worse than "
              "its reference allows. A script that ends by sys.exit gives its own number."),
        ("2", "The command line was wrong, or the program could not start."))

FILES = (("~/.config/quillet", "Settings and the layout of the window (XDG_CONFIG_HOME)."),
         ("~/.local/share/quillet", "Scripts, and what cloud drive and item service keep here (XDG_DATA_HOME)."),
         ("~/.local/state/quillet/recovery", "Recovery files (XDG_STATE_HOME)."),
         ("~/.cache/quillet", "What was read of foreign files, and their pictures; may be deleted (XDG_CACHE_HOME)."))

ENVIRONMENT = (("DISPLAY , WAYLAND_DISPLAY", "Without both, a run is headless."),
               ("LANGUAGE , LC_ALL , LC_MESSAGES , LANG", "The language of texts, in this order. Lines are the same in every one."),
               ("HOME", "If it is not set, nothing that a run keeps outlives that run."))

EXAMPLES = (("Open a model in a window", "quillet bracket.step"),
            ("Convert one, without a display", "quillet bracket.step --export bracket.stl"),
            ("Tell its parts, size and mass", "quillet --info --density 7.85 bracket.step"),
            ("Draw it as a small picture", "quillet --thumbnail bracket.step 256 bracket.png"),
            ("Run a transcript of lines", "quillet --headless --replay first-look.txt --set model=bracket.step"),
            ("Run a folder of transcripts as tests", "quillet --test models --junit models.xml"))


def text(words):
    """A line of text, whatever it begins with."""
    words = words.replace("\\", "\\e").replace("-", "\\-").replace("\n", " ")
    return "\\&" + words if words[:1] in (".", "'") else words


def sentences(words):
    """A new sentence begins a new line."""
    parts = re.split(r"(?<=[.;])\s+(?=[A-Z])", words)
    return [text(line) for part in parts for line in textwrap.wrap(part, WIDTH, break_on_hyphens=False)]


def argument(words):
    """One argument of a macro, of which none is taken for a macro or a delimiter itself."""
    return '"' + "\\&" + text(words).replace('"', "\\(dq") + '"'


def head(name, section, told, version, date):
    return [f".Dd {date}", f".Dt {name.upper()} {section}", f".Os Quillet {version}", ".Sh NAME", f".Nm {name}", f".Nd {told}"]


def listing(rows, macro):
    result = [".Bl -tag -width Ds"]
    for key, told in rows:
        names = key.split(" , ")
        result += [f".It {macro} " + f" , {macro} ".join(argument(name) for name in names), *sentences(told)]
    return [*result, ".El"]


def program_page(options, version, date):
    page = head("quillet", 1, "open, build, measure and export solid models", version, date)
    page += [".Sh SYNOPSIS", ".Nm", ".Op Ar option ...", ".Op Ar file ...", ".Sh DESCRIPTION", ".Nm",
             *sentences("opens solid models in STEP, IGES, BREP, STL, OBJ, glTF and VRML files and in documents of its own, in a "
                        "window or without one. Files are opened first; then lines, transcripts and scripts run in the order in "
                        "which they are given, and the first line that fails ends the run."),
             "The lines are those of", ".Xr quillet-lines 7 .", ".Pp", "The options are:",
             ".Bl -tag -width Ds"]
    for option in options:
        value = f" Ns = Ns Ar {argument(option.value)}" if option.value else ""
        page += [f".It Fl \\-{text(option.name)}{value}", *sentences(option.help)]
    page += [".El", ".Sh ENVIRONMENT", *listing(ENVIRONMENT, "Ev"), ".Sh FILES", *listing(FILES, "Pa"), ".Sh EXIT STATUS",
             *listing(EXIT, "Li"), ".Sh EXAMPLES"]
    for told, command in EXAMPLES:
        page += [f"{told}:", ".Pp", f".Dl {text(command)}", ".Pp"]
    page.pop()
    return [*page, ".Sh SEE ALSO", ".Xr quillet-itemhub 1 ,", ".Xr quillet-thumbnailer 1 ,", ".Xr quillet-lines 7"]


def lines_page(lines, version, date):
    page = head("quillet-lines", 7, "the lines of text that quillet understands", version, date)
    page += [".Sh DESCRIPTION", "A line is", ".Ar area Ns \\&. Ns Ar name ,",
             "then parameters separated by blanks, then flags that begin with a slash.",
             "A parameter with blanks stands in double quotes.", "Lines are given to", ".Xr quillet 1",
             "by its option", ".Fl \\-command ,", "by transcripts, by the console and by the command box of the window.",
             ".Sh THE LINES BY THEIR AREAS"]
    for area, of_area in itertools.groupby(lines, lambda line: line.area):
        page += [f".Ss {text(area)}", ".Bl -tag -width Ds"]
        for line in of_area:
            usage = f" Ar {argument(line.usage)}" if line.usage else ""
            page += [f".It Ic {argument(area + '.' + line.name)}{usage}", *(sentences(line.help) or ["No more is told."])]
        page.append(".El")
    return [*page, ".Sh SEE ALSO", ".Xr quillet 1"]


def main(program, metainfo, folder):
    release = xml.etree.ElementTree.parse(metainfo).getroot().find("releases/release")
    date = datetime.date.fromisoformat(release.get("date"))
    # Not strftime, which speaks the language of the environment.
    months = ("January February March April May June July August September October November December").split()
    told = release.get("version"), f"{months[date.month - 1]} {date.day}, {date.year}"
    for path, page in (("man1/quillet.1", program_page(texts.options(program), *told)),
                       ("man7/quillet-lines.7", lines_page(texts.lines(program), *told))):
        file = pathlib.Path(folder) / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text("\n".join(page) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
