import contextlib
from typing import Iterator


@contextlib.contextmanager
def transaction(name: str) -> Iterator[None]:
    """What runs inside is one step of the undo list. An exception takes it back. Inside another transaction
    it is a part of that one, which is taken back with it."""
    import Script

    Script.BeginTransaction(name)
    try:
        yield
    except BaseException:
        Script.AbortTransaction()
        raise
    Script.CommitTransaction()
