"""The reference of what Python scripts import, as HTML: the package by its sources, the modules of lines by the stubs that the
program writes. Both are read as Python reads them. What shows how to use each is a piece of a script that the tests run
(Docs/python, a script for each module)."""

import ast
import html
import pathlib
import re
import subprocess
import tempfile


def public(name):
    return not name.startswith("_")


def signature(node, name=None):
    arguments = ast.unparse(node.args)
    returned = f" -> {ast.unparse(node.returns)}" if node.returns else ""
    return f"{name or node.name}({arguments}){returned}"


def entry(text, told):
    return f"<dt><code>{html.escape(text)}</code></dt>\n<dd>{html.escape(told or '')}</dd>\n"


def examples(folder):
    """For each module, the piece of a script that each of its names has: a line "#: Module.name, ..." begins one."""
    found = {}
    for file in sorted(folder.glob("*.py")):
        parts = re.split(r"^#: (.*)$", file.read_text(encoding="utf-8"), flags=re.MULTILINE)
        for names, code in zip(parts[1::2], parts[2::2]):
            for whole in names.split(", "):
                module, _, name = whole.rpartition(".")
                if name in found.setdefault(module, {}):
                    raise SystemExit(f"{file}: {whole} has two pieces")
                found[module][name] = code.strip("\n")
    return found


def with_example(row, code):
    """The row of a name, with what shows how to use it."""
    if not code:
        return row
    return row.removesuffix("</dd>\n") + f"\n<pre><code>{html.escape(code)}</code></pre></dd>\n"


def is_property(node):
    return any(isinstance(each, ast.Name) and each.id == "property" for each in node.decorator_list)


def of_class(node):
    """A class with its fields, properties and methods."""
    rows = []
    for part in node.body:
        if isinstance(part, ast.AnnAssign) and isinstance(part.target, ast.Name) and public(part.target.id):
            rows.append(entry(f"{part.target.id}: {ast.unparse(part.annotation)}", ""))
        elif isinstance(part, ast.FunctionDef) and public(part.name):
            name = f"{part.name}: {ast.unparse(part.returns)}" if is_property(part) and part.returns else signature(part)
            rows.append(entry(name, ast.get_docstring(part)))
    told = html.escape(ast.get_docstring(node) or "")
    return f"<dt><code>class {node.name}</code></dt>\n<dd>{told}\n<dl>\n{''.join(rows)}</dl></dd>\n"


def members(tree, wanted):
    """The classes and functions of a module whose names are wanted."""
    rows = {}
    for node in tree.body:
        name = getattr(node, "name", "")
        if wanted(name) and isinstance(node, ast.ClassDef):
            rows[name] = of_class(node)
        elif wanted(name) and isinstance(node, ast.FunctionDef):
            rows[name] = entry(signature(node), ast.get_docstring(node))
    return rows


def functions(file):
    """The names of a file's functions that scripts call."""
    return {node.name for node in parsed(file).body if isinstance(node, ast.FunctionDef) and public(node.name)}


def heading(name, tree):
    told = html.escape(ast.get_docstring(tree) or "")
    return f"<h2 id=\"{name}\">{name}</h2>\n<p class=\"told\">{told}</p>\n"


def parsed(file):
    return ast.parse(file.read_text(encoding="utf-8"), file.name)


def exported(tree):
    """What a package's first file offers: its list of names, and the objects that it makes under some of them."""
    names, made = set(), {}
    for node in tree.body:
        if isinstance(node, ast.Assign) and isinstance(node.targets[0], ast.Name):
            name = node.targets[0].id
            if name == "__all__":
                names = set(ast.literal_eval(node.value))
            elif isinstance(node.value, ast.Call):
                made[name] = entry(f"{name}: {ast.unparse(node.value.func)}", "")
    return names, {name: row for name, row in made.items() if name in names}


def listed(tree, shown):
    rows = members(tree, lambda name: name and public(name))
    return f"<dl>\n{''.join(with_example(row, shown.get(name)) for name, row in rows.items())}</dl>\n"


def package(folder, shown):
    first = parsed(folder / "__init__.py")
    names, own = exported(first)
    # What stands in no file of its own comes from the program, which describes it beside the package.
    for file in [*sorted(folder.glob("*.py")), folder.parent / "_quillet.pyi"]:
        if file.stem == "__init__" or not public(file.stem) or file.suffix == ".pyi":
            own |= members(parsed(file), lambda name: name in names)
    body = heading("quillet", first)
    rows = (with_example(own[name], shown.get("quillet", {}).get(name)) for name in sorted(own, key=str.lower))
    body += f"<dl>\n{''.join(rows)}</dl>\n"
    for file in sorted(folder.glob("*.py")):
        if public(file.stem):
            tree = parsed(file)
            body += heading(f"quillet.{file.stem}", tree) + listed(tree, shown.get(f"quillet.{file.stem}", {}))
    return body


def modules_of_lines(program, shown):
    body = "<h1>Modules of lines</h1>\n<p>Each area of lines is a module of the same name, each line a function of it.</p>\n"
    with tempfile.TemporaryDirectory(prefix="quillet-stubs-") as folder:
        subprocess.run([program, "--write-stubs", folder], check=True, stdout=subprocess.DEVNULL)
        for file in sorted(pathlib.Path(folder).glob("*.pyi")):
            tree = parsed(file)
            body += heading(file.stem, tree) + listed(tree, shown.get(file.stem, {}))
    return body


def reference(program, docs):
    folder = pathlib.Path(program).resolve().parents[1] / "lib/python/quillet"
    shown = examples(docs / "python")
    return "<h1>Python</h1>\n" + package(folder, shown) + modules_of_lines(program, shown)
