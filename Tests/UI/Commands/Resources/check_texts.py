#!/usr/bin/python3
"""Compares the texts in the sources with their translations.

    check_texts.py            fails when a translation's English differs from the program's: it would never be shown
    check_texts.py --missing  lists the texts that no translation has yet
"""

import argparse
import html
import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[4]
LITERALS = r'((?:"(?:[^"\\]|\\.)*"\s*)+)'
CALL = re.compile(r'\b(?:localized|localizedFormat|text|told|panelText|getLocalizedString)\(\s*(?:(?:L"\w+"|kDomain),\s*)?"(\w+)",\s*' + LITERALS)
ROW = re.compile(r'\.key = L"(\w+)",\s*\.title = ' + LITERALS + r'(?:,\s*\.titleKey = "(\w+)")?')
TOOLTIP = re.compile(r'\.tooltip = ' + LITERALS + r',\s*\.tooltipKey = "(\w+)"')
# A tooltip without a key of its own has the command's with "Desc" appended.
DESCRIBED = re.compile(ROW.pattern + r',\s*\.tooltip = ' + LITERALS + r'(?!,\s*\.tooltipKey)')
PREFERENCE = re.compile(r'\bL"\w+\.\w+",\s*"(\w+)",\s*' + LITERALS)
KEYED = re.compile(r"<\w+\s[^>]*\b\w+Key=[^>]*>")
ENTRY = re.compile(r'^msgctxt "(\w+)"\nmsgid ' + LITERALS + r'msgstr ' + LITERALS, re.MULTILINE)


def joined(literals):
    return "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals))


def texts_of(folder):
    texts = {}
    for path in sorted(folder.rglob("*.cpp")) + sorted(folder.rglob("*.h")):
        source = path.read_text()
        for key, literals in CALL.findall(source):
            texts[key] = joined(literals)
        for key, literals, title_key in ROW.findall(source):
            texts[title_key or key] = joined(literals)
        for key, _, _, literals in DESCRIBED.findall(source):
            texts[key + "Desc"] = joined(literals)
        for key, literals in PREFERENCE.findall(source):
            texts[key] = joined(literals)
        for literals, key in TOOLTIP.findall(source):
            texts[key] = joined(literals)
    for path in sorted(folder.rglob("texts.json")):
        texts.update({key: json.dumps(text, ensure_ascii=False)[1:-1] for key, text in json.loads(path.read_text()).items()})
    for path in sorted(folder.rglob("*.xml")):
        for element in KEYED.findall(path.read_text()):
            attributes = dict(re.findall(r'(\w+)="([^"]*)"', element))
            for name, key in attributes.items():
                if name.endswith("Key"):
                    texts[key] = html.unescape(attributes.get(name.removesuffix("Key"), ""))
    return {key: text for key, text in texts.items() if text}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--missing", action="store_true")
    missing = parser.parse_args().missing
    failed = False
    for catalogue in sorted(ROOT.glob("*/*/Configuration/Translations/*/*.po")):
        translated = {key: joined(english) for key, english, _ in ENTRY.findall(catalogue.read_text())}
        for key, text in texts_of(catalogue.parents[3]).items():
            if key not in translated:
                if missing:
                    print(f'{catalogue.name}: {key}: "{text}"')
            elif translated[key] != text:
                print(f'{catalogue}: {key}: the program says "{text}", the translation is of "{translated[key]}"',
                      file=sys.stderr)
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
