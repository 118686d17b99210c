import contextlib
from typing import Iterator

from ._ask import line


@contextlib.contextmanager
def transaction(name: str) -> Iterator[None]:
    """What runs inside is one step of the undo list. An exception that leaves it takes it back; a line that
    fails, and whose exception is caught inside, takes back nothing but itself. Inside another transaction it
    is a part of that one, which is taken back with it; if it is taken back itself, the outer one goes on."""
    line("Script.BeginTransaction")(name)
    try:
        yield
    except BaseException:
        line("Script.AbortTransaction")()
        raise
    line("Script.CommitTransaction")()
