"""The answers of the area Script, and the functions of other lines."""

import json
from typing import Any, Callable, Dict

import _quillet

Function = Callable[..., str]
_functions: Dict[str, Function] = {}


def line(name: str) -> Function:
    """The function of a line, such as "Design.Box"."""
    found = _functions.get(name)
    if found is None:
        area, command = name.split(".")
        found = _functions[name] = getattr(_quillet.area(area), command)
    return found


def ask(question: str, *parameters: Any, **flags: bool) -> Any:
    return json.loads(line("Script." + question)(*parameters, **flags))
