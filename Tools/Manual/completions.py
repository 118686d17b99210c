#!/usr/bin/python3
"""Writes what shells complete after "quillet", from the lists of the program.

    completions.py PROGRAM FOLDER

FOLDER gets the files where shells look for them below a prefix's share.
"""

import pathlib
import sys

import texts

FILES, FOLDERS = {"FILE"}, {"DIR"}


def quoted(text):
    """As one word of each of the three shells."""
    return "'" + text.replace("'", "'\\''") + "'"


def bash(options, lines):
    cases = []
    for option in options:
        words = lines if option.value == "LINE" else texts.choices(option.value)
        if words:
            cases.append(f"    --{option.name}) words={quoted(' '.join(words))} ;;")
        elif option.value in FOLDERS:
            cases.append(f"    --{option.name}) compopt -o dirnames; return ;;")
        elif option.value:
            cases.append(f"    --{option.name}) return ;;")
    switches = " ".join(f"--{option.name}" for option in options)
    return f"""# What bash completes after "quillet". Made from the program's own lists; names of files are completed where nothing here fits.
_quillet() {{
    local words=
    case $3 in
{chr(10).join(cases)}
    *) [[ $2 != -* ]] || words={quoted(switches)} ;;
    esac
    COMPREPLY=()
    [[ -z $words ]] || mapfile -t COMPREPLY < <(compgen -W "$words" -- "$2")
}}
complete -o default -F _quillet quillet
"""


def zsh(options, lines):
    def action(option):
        if not option.value:
            return ""
        if option.value == "LINE":
            return ":line:_quillet_lines"
        if words := texts.choices(option.value):
            return f":choice:({' '.join(words)})"
        if option.value in FOLDERS:
            return ":folder:_files -/"
        return f":{option.value.lower()}:" + ("_files" if option.value in FILES else " ")

    def row(option):
        told = option.help.replace("\\", "\\\\").replace("[", "\\[").replace("]", "\\]")
        # Colons end a description where a value follows.
        return "    " + quoted(f"*--{option.name}[{told}]{action(option)}")

    return f"""#compdef quillet
# What zsh completes after "quillet". Made from the program's own lists.
_quillet_lines() {{
    local -a all=(
{chr(10).join("        " + line for line in lines)}
    )
    compadd -a all
}}
_arguments \\
{" ".join(row(option) + chr(32) + chr(92) + chr(10) for option in options)}    '*:file:_files'
"""


def fish(options, lines):
    rows = []
    for option in options:
        words = lines if option.value == "LINE" else texts.choices(option.value)
        value = ""
        if words:
            value = f" -x -a {quoted(' '.join(words))}"
        elif option.value in FOLDERS:
            value = " -x -a '(__fish_complete_directories)'"
        elif option.value:
            value = " -r -F" if option.value in FILES else " -x"
        told = option.help.replace("\\", "\\\\").replace("'", "\\'")
        rows.append(f"complete -c quillet -l {option.name}{value} -d '{told}'")
    head = "# What fish completes after \"quillet\". Made from the program's own lists."
    return "\n".join([head, *rows, ""])


def main(program, folder):
    options = texts.options(program)
    lines = [f"{line.area}.{line.name}" for line in texts.lines(program)]
    for path, text in (("bash-completion/completions/quillet", bash(options, lines)),
                       ("zsh/site-functions/_quillet", zsh(options, lines)),
                       ("fish/vendor_completions.d/quillet.fish", fish(options, lines))):
        file = pathlib.Path(folder) / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
