import os
import re
from typing import Any, Callable, Optional, TypeVar, Union, overload

import _quillet

Function = TypeVar("Function", bound=Callable[[], object])


@overload
def command(name: Function) -> Function: ...


@overload
def command(name: Optional[str] = None, *, title: Optional[str] = None,
            key: str = "", icon: Union[str, "os.PathLike[str]"] = "") -> Callable[[Function], Function]: ...


def command(name: Union[str, Callable[[], object], None] = None, *, title: Optional[str] = None,
            key: str = "", icon: Union[str, "os.PathLike[str]"] = "") -> Any:
    """Makes a function a command of the program: @quillet.command(title="Flange", key="Ctrl+Shift+F",
    icon="flange.png"). It appears among the scripts in the menu Tools, the search finds it by its title, and it is
    run by the key or by its line, Scripts.NAME, which is also what a recording contains. The name is the
    function's own unless another is given, and its docstring is the description. The icon is a PNG file, or a
    folder with 16x16.png, 24x24.png, 32x32.png and 64x64.png; a relative path is relative to the script. To have a command at
    each start, put the script into the folder autorun."""
    if callable(name):
        return _define(name, None, None, "", "")
    return lambda function: _define(function, name, title, key, os.fspath(icon))


def _picture(function: Callable[[], object], icon: str) -> str:
    if not icon:
        return ""
    code = getattr(function, "__code__", None)
    path = os.path.abspath(os.path.join(os.path.dirname(code.co_filename) if code else "", icon))
    known = os.path.isfile(path) and path.endswith(".png") or os.path.isfile(os.path.join(path, "16x16.png"))
    if not known:
        raise ValueError(f'"{icon}" is neither a PNG file nor a folder with 16x16.png')
    return path


def _define(function: Function, name: Optional[str], title: Optional[str], key: str, icon: str) -> Function:
    own = name or str(getattr(function, "__name__", ""))
    if not re.fullmatch(r"[A-Za-z]\w*", own, re.ASCII):
        raise ValueError(f'"{own}" is not a name for a command: it is made of letters, digits and _')
    description = (function.__doc__ or "").strip().split("\n")[0]
    _quillet.define(own, title or own.replace("_", " ").capitalize(), description, key, _picture(function, icon),
                    function)
    return function
