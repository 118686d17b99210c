import re
from typing import Any, Callable, Optional, TypeVar, Union, overload

import _quillet

Function = TypeVar("Function", bound=Callable[[], object])


@overload
def command(name: Function) -> Function: ...


@overload
def command(name: Optional[str] = None, *, title: Optional[str] = None,
            key: str = "") -> Callable[[Function], Function]: ...


def command(name: Union[str, Callable[[], object], None] = None, *, title: Optional[str] = None,
            key: str = "") -> Any:
    """Makes a function a command of the program: @quillet.command(title="Flange", key="Ctrl+Shift+F"). The search
    finds it by its title, the key runs it, and so does its line, Scripts.NAME, which a recording has of it. The
    name is the function's own unless another is given, and its docstring tells what it does. To have a command at
    each start, put the script into the folder autorun."""
    if callable(name):
        return _define(name, None, None, "")
    return lambda function: _define(function, name, title, key)


def _define(function: Function, name: Optional[str], title: Optional[str], key: str) -> Function:
    own = name or str(getattr(function, "__name__", ""))
    if not re.fullmatch(r"[A-Za-z]\w*", own, re.ASCII):
        raise ValueError(f'"{own}" is not a name for a command: it is made of letters, digits and _')
    description = (function.__doc__ or "").strip().split("\n")[0]
    _quillet.define(own, title or own.replace("_", " ").capitalize(), description, key, function)
    return function
