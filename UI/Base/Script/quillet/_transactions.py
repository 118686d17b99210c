import contextlib
from typing import Iterator


@contextlib.contextmanager
def transaction(name: str) -> Iterator[None]:
    """What runs inside is one step of the undo list. An exception that leaves it takes it back; a line that
    fails, and whose exception is caught inside, takes back nothing but itself. Inside another transaction it
    is a part of that one, which is taken back with it; if it is taken back itself, the outer one goes on."""
    import Script

    Script.BeginTransaction(name)
    try:
        yield
    except BaseException:
        Script.AbortTransaction()
        raise
    Script.CommitTransaction()
