#!/usr/bin/python3
"""Holds that names are never shown as HTML.

    plain_texts.py        fails where a tooltip, a label or a message box gets its text without UI/Base/Window/PlainText.h

Qt shows a text that looks like HTML as such, and loads the pictures that it names. Names of parts, files and messages come from
others, so that a part called <img src="/dev/zero"> would take all memory. What Qt offers for rich text, or guesses, is named below.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
HELPER = "UI/Base/Window/PlainText.cpp"

# What may stand in the helper alone.
FORBIDDEN = [
    r"\bset(ToolTip|StatusTip|WhatsThis|TextFormat|InformativeText|DetailedText|Html|Markdown)\s*\(",
    r"\b(insertHtml|setDefaultStyleSheet)\s*\(",
    r"\bQToolTip\s*::",
    r"\bQMessageBox\s*::\s*(about|aboutQt|critical|information|question|warning)\b",
    r"\bQMessageBox\s+\w+\s*[({;]",
    r"\b(new\s+|make_unique\s*<\s*)(QMessageBox|QLabel|QErrorMessage|QProgressDialog)\b",
    r"\bQLabel\s+\w+\s*[({;]",
    r"<\s*QLabel\s*>\s*\(\s*\"",
    # A text document shows as HTML only what the calls above give it.
    r"\bQ(TextEdit(?!::ExtraSelection)|TextBrowser|StaticText|ErrorMessage|ProgressDialog|InputDialog|SystemTrayIcon)\b",
]
# A model's tooltip is what the helper makes of it: the next thing that is returned.
MODEL_TOOLTIP = re.compile(r"case\s+Qt::ToolTipRole\s*:\s*return\s+(?!PlainText::tooltip\s*\()")

# What is no code: comments, raw texts, texts.
NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|R"\(.*?\)"|"(?:[^"\\\n]|\\.)*"', re.S)


def blanked(found):
    """As long as what was found, in as many lines; of a text the quotes stay."""
    text = found.group()
    inner = re.sub(r"[^\n]", " ", text)
    return f'"{inner[1:-1]}"' if text.startswith('"') else inner


def code_of(path):
    return NO_CODE.sub(blanked, (ROOT / path).read_text())


def faults():
    listed = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard", "UI/*.h", "UI/*.cpp", "Server/*.cpp"],
                                     cwd=ROOT, text=True)
    for path in sorted(set(listed.splitlines())):
        if path == HELPER or not (ROOT / path).is_file():
            continue
        code = code_of(path)
        for pattern in [re.compile(each) for each in FORBIDDEN] + [MODEL_TOOLTIP]:
            for found in pattern.finditer(code):
                line = code.count("\n", 0, found.start()) + 1
                yield f"{path}:{line}: \"{' '.join(found.group().split())}\" (use UI/Base/Window/PlainText.h)"


def main():
    found = list(faults())
    print("\n".join(found), end="\n" if found else "", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
