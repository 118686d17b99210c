import contextlib
from typing import Iterator

from ._ask import line


@contextlib.contextmanager
def transaction(name: str) -> Iterator[None]:
    """Everything inside is one step of the undo list. An exception that leaves it rolls it back; a failed line
    whose exception is caught inside only undoes itself. Inside another transaction it is a part of that one, and
    is rolled back with it; if it is rolled back itself, the outer one continues."""
    line("Script.BeginTransaction")(name)
    try:
        yield
    except BaseException:
        line("Script.AbortTransaction")()
        raise
    line("Script.CommitTransaction")()
