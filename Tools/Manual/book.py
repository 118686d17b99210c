#!/usr/bin/python3
"""Writes the manual as pages for a browser: what people wrote, and the reference from the lists of the program.

    book.py PROGRAM DOCS FOLDER MENUS...

MENUS are the descriptions of the program's menus. DOCS has what people wrote, with its pictures. FOLDER gets these as HTML,
reference.html and python.html, and one page for each command in commands/, which help opens while the command runs. A link
that leads nowhere ends it with an error.
"""

import collections
import html
import html.parser
import itertools
import pathlib
import re
import shutil
import sys
import urllib.parse
import xml.etree.ElementTree

import markdown
import markdown.extensions.toc

import scripts
import texts

STYLE = """
:root { color-scheme: light dark; }
body { font: 16px/1.55 sans-serif; max-width: 56rem; margin: 0 auto; padding: 1rem 1.5rem 4rem; }
nav { font-size: 0.9rem; padding: 0.5rem 0; border-bottom: 1px solid #8888; }
h1, h2, h3 { line-height: 1.25; margin-top: 2rem; }
table { border-collapse: collapse; margin: 1rem 0; }
th, td { border: 1px solid #8888; padding: 0.3rem 0.6rem; text-align: left; vertical-align: top; }
code { font-family: monospace; background: #8882; padding: 0 0.2em; border-radius: 3px; }
pre { background: #8882; padding: 0.7rem 1rem; overflow-x: auto; border-radius: 5px; }
pre code { background: none; padding: 0; }
img { max-width: 100%; }
dt { margin-top: 0.6rem; }
dd { margin-left: 1.5rem; }
.told { white-space: pre-wrap; }
"""
PAGES = (("manual.html", "Manual"), ("reference.html", "Reference"), ("python.html", "Python"), ("service.html", "Item service"),
         ("erste-schritte.html", "Erste Schritte"))
GERMAN = {"erste-schritte"}

Place = collections.namedtuple("Place", "menu keys")


def page(title, body, above="", language="en"):
    """A whole page; `above` leads from its folder to that of the others."""
    links = " · ".join(f'<a href="{above}{file}">{name}</a>' for file, name in PAGES)
    return (f'<!DOCTYPE html>\n<html lang="{language}">\n<head>\n<meta charset="utf-8">\n<title>{html.escape(title)} – Quillet</title>\n'
            f'<meta name="viewport" content="width=device-width">\n<style>{STYLE}</style>\n</head>\n<body>\n<nav>{links}</nav>\n'
            f"{body}\n</body>\n</html>\n")


def slug(value, separator):
    """As the places within a page are called where the sources are read."""
    return re.sub(r"[^\w\- ]", "", value.lower()).replace(" ", separator)


def written(source):
    text = source.read_text(encoding="utf-8")
    toc = markdown.extensions.toc.TocExtension(slugify=slug)
    body = markdown.markdown(text, extensions=["tables", "fenced_code", "sane_lists", toc], output_format="html5")
    # Pages lead to each other; what stays in the sources is named without a link.
    body = re.sub(r'href="(?:Docs/)?(manual|service|erste-schritte)\.md(#[^"]*)?"', r'href="\1.html\2"', body)
    body = re.sub(r'<a href="([^"#:]*\.(?:md|yaml|txt))(?:#[^"]*)?">(.*?)</a>', r"\2", body)
    return page(text.splitlines()[0].lstrip("# "), body, language="de" if source.stem in GERMAN else "en")


def places(menus):
    """Where each command stands in the menus, by its key."""
    found = collections.defaultdict(list)

    def walk(element, path):
        for child in element:
            title = (child.get("title") or "").replace("&", "")
            if child.tag in ("menu", "add"):
                walk(child, [*path, title or child.get("id") or child.get("menu", "")])
            elif child.tag == "item":
                found[child.get("command")].append(Place(" › ".join([*path, title] if title else path), child.get("keys", "")))

    for file in menus:
        walk(xml.etree.ElementTree.parse(file).getroot(), [])
    return found


def code(text):
    return f"<code>{html.escape(text)}</code>"


def table(head, rows):
    cells = lambda tag, row: "<tr>" + "".join(f"<{tag}>{cell}</{tag}>" for cell in row) + "</tr>"
    return "<table>\n" + "\n".join([cells("th", head), *(cells("td", row) for row in rows)]) + "\n</table>\n"


def keys_of(definition, found):
    keys = [definition["hotkey"], *(place.keys for place in found[definition["id"]])]
    spelt = lambda key: "+".join(part[:1].upper() + part[1:] for part in key.strip().split("+"))
    return sorted({spelt(key) for each in keys for key in each.split(";") if key.strip()})


def command_page(definition, lines, found):
    """What is known of one command."""
    title = definition["title"].rstrip(".") or definition["id"]
    rows = [("Identifier", code(definition["id"]))]
    if keys := keys_of(definition, found):
        rows.append(("Keys", ", ".join(map(code, keys))))
    if menu := [html.escape(place.menu) for place in found[definition["id"]] if place.menu]:
        rows.append(("Menu", "<br>".join(menu)))
    rows += [("Line", f"{code(f'{line.area}.{line.name} {line.usage}'.strip())}<br>{html.escape(line.help)}") for line in lines]
    started = f"Commands.Start {definition['id']}" + "".join(f" {name}=…" for name in definition.get("arguments", []))
    rows.append(("Started by", code(started)))
    rows.append(("Recorded", "yes" if definition["scriptable"] else "no"))
    body = f"<h1>{html.escape(title)}</h1>\n" + table(("What", "Is"), rows)
    return page(title, body + '<p><a href="../reference.html#commands">All commands</a></p>', "../")


def reference(program, definitions, lines, found):
    body = ["<h1>Reference</h1>", "<p>Made from what the program lists of itself.</p>", "<ul>"]
    sections = (("commands", "Commands"), ("keys", "Keys"), ("lines", "Lines"), ("options", "The command line"),
                ("preferences", "Preferences"), ("formats", "Formats"))
    body += [f'<li><a href="#{place}">{name}</a></li>' for place, name in sections] + ["</ul>"]
    heads = {place: f'<h2 id="{place}">{name}</h2>' for place, name in sections}
    body += [heads["commands"],
             table(("Command", "Identifier", "Keys"),
                   [(f'<a href="commands/{each["id"]}.html">{html.escape(each["title"] or each["id"])}</a>', code(each["id"]),
                     ", ".join(map(code, keys_of(each, found)))) for each in definitions])]
    bound = sorted((key, each["title"]) for each in definitions for key in keys_of(each, found))
    body += [heads["keys"], table(("Key", "Command"), [(code(key), html.escape(title)) for key, title in bound]), heads["lines"]]
    for area, of_area in itertools.groupby(lines, lambda line: line.area):
        body += [f'<h3 id="{area.lower()}">{area}</h3>',
                 table(("Line", "What it does"), [(code(f"{line.area}.{line.name} {line.usage}".strip()), html.escape(line.help))
                                                  for line in of_area])]
    body += [heads["options"],
             table(("Option", "Meaning"), [(code(f"--{each.name} {each.value}".strip()), html.escape(each.help))
                                           for each in texts.options(program)])]
    preferences = re.findall(r"^(\S+) = (.*?)  \((.*)\)$", texts.answer(program, "Options.List"), re.M)
    body += [heads["preferences"], table(("Option", "Meaning"), [(code(name), html.escape(told)) for name, _, told in preferences])]
    body += [heads["formats"],
             table(("Format", "Suffixes", "Read", "Written"),
                   [(html.escape(each["name"]), code(" ".join(each["suffixes"])), "yes" if each["reads"] else "no",
                     "yes" if each["writes"] else "no") for each in texts.listed(program, "formats")])]
    return page("Reference", "\n".join(body))


class Links(html.parser.HTMLParser):
    """The links of a page and the places that it has."""

    def __init__(self, file):
        super().__init__()
        self.links, self.places = [], set()
        self.feed(file.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        named = dict(attributes)
        self.places.add(named.get("id"))
        self.links += [named[name] for name in ("href", "src") if named.get(name)]


def dead_links(folder):
    known = {file: Links(file) for file in folder.rglob("*.html")}
    for file, of_file in known.items():
        for link in of_file.links:
            if re.match(r"[a-z]+:", link):
                continue
            path, _, place = urllib.parse.unquote(link).partition("#")
            target = (file.parent / path).resolve() if path else file
            if not target.is_file() or (place and place not in known[target].places):
                yield f"{file.relative_to(folder)}: {link} leads nowhere"


def main(program, docs, folder, *menus):
    docs, folder = pathlib.Path(docs), pathlib.Path(folder).resolve()
    for old in folder.rglob("*.html"):
        old.unlink()
    (folder / "commands").mkdir(parents=True, exist_ok=True)
    for source in docs.glob("*.md"):
        (folder / f"{source.stem}.html").write_text(written(source), encoding="utf-8")
    shutil.rmtree(folder / "pictures", ignore_errors=True)
    shutil.copytree(docs / "pictures", folder / "pictures", ignore=shutil.ignore_patterns("*.txt"))
    definitions = sorted(texts.listed(program, "definitions"), key=lambda each: (each["title"].lower(), each["id"]))
    lines, found = texts.lines(program), places(menus)
    for each in definitions:
        own = [line for line in lines if line.definition == each["id"]]
        (folder / "commands" / f"{each['id']}.html").write_text(command_page(each, own, found), encoding="utf-8")
    (folder / "reference.html").write_text(reference(program, definitions, lines, found), encoding="utf-8")
    (folder / "python.html").write_text(page("Python", scripts.reference(program, docs)), encoding="utf-8")
    if dead := list(dead_links(folder)):
        sys.exit("\n".join(dead))


if __name__ == "__main__":
    main(*sys.argv[1:])
