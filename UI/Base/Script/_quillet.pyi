"""What the package quillet stands on."""

from types import ModuleType
from typing import Callable, Dict, List

version: str

class CommandError(RuntimeError):
    """A text command failed; the text is its reason."""

def run(line: str) -> str:
    """Runs a line of text and returns its message."""

def area(name: str) -> ModuleType:
    """The module of a subject area."""

def areas() -> List[str]:
    """The names of all subject areas."""

def parameters() -> Dict[str, str]:
    """What the run was given with --set NAME=VALUE, and replays have added."""

def on_closing_down(function: Callable[[], object]) -> None:
    """Has a function called before the application closes; if it returns False, the application stays."""

def off_closing_down(function: Callable[[], object]) -> None:
    """No longer calls the function before the application closes. Raises ValueError if it isn't called."""

def define(name: str, title: str, description: str, key: str, icon: str, function: Callable[[], object]) -> None:
    """Makes a function a command, with a line Scripts.NAME."""

def listen(function: Callable[[str], object]) -> None:
    """Has a function called with "model", "document" or "selection" after each change of it."""

def revision() -> int:
    """A number that is another one after each change of a model."""

def forget_added() -> None:
    """Has Script.Added tell only what is added from now on."""

def mesh(component: str) -> Dict[str, memoryview]:
    """The numbers of a component's mesh."""
