"""The reference of what Python scripts import, as HTML: the package by its sources, the modules of lines by the stubs that the
program writes. Both are read as Python reads them."""

import ast
import html
import pathlib
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


def package(folder):
    first = parsed(folder / "__init__.py")
    names, own = exported(first)
    # What stands in no file of its own comes from the program, which describes it beside the package.
    for file in [*sorted(folder.glob("*.py")), folder.parent / "_quillet.pyi"]:
        if file.stem == "__init__" or not public(file.stem) or file.suffix == ".pyi":
            own |= members(parsed(file), lambda name: name in names)
    body = heading("quillet", first)
    body += f"<dl>\n{''.join(own[name] for name in sorted(own, key=str.lower))}</dl>\n"
    for file in sorted(folder.glob("*.py")):
        if public(file.stem):
            tree = parsed(file)
            body += heading(f"quillet.{file.stem}", tree)
            body += f"<dl>\n{''.join(members(tree, lambda name: name and public(name)).values())}</dl>\n"
    return body


def modules_of_lines(program):
    body = "<h1>Modules of lines</h1>\n<p>Each area of lines is a module of the same name, each line a function of it.</p>\n"
    with tempfile.TemporaryDirectory(prefix="quillet-stubs-") as folder:
        subprocess.run([program, "--write-stubs", folder], check=True, stdout=subprocess.DEVNULL)
        for file in sorted(pathlib.Path(folder).glob("*.pyi")):
            tree = parsed(file)
            body += heading(file.stem, tree)
            body += f"<dl>\n{''.join(members(tree, lambda name: name and public(name)).values())}</dl>\n"
    return body


def reference(program):
    folder = pathlib.Path(program).resolve().parents[1] / "lib/python/quillet"
    return "<h1>Python</h1>\n" + package(folder) + modules_of_lines(program)
