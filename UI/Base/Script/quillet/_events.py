"""Events that scripts can handle."""

from typing import Any, Callable, Dict, List, Optional, TypeVar, Union, overload

import _quillet

Handler = Callable[[], object]
H = TypeVar("H", bound=Handler)

_EVENTS = ("selection", "document", "model")
_handlers: Dict[str, List[Handler]] = {event: [] for event in _EVENTS}
_listens = False


def _require(event: str) -> None:
    if event not in _EVENTS:
        raise ValueError(f'there is no event "{event}"; there are selection, document, model and closing')


def _heard(event: str) -> None:
    failure: Optional[BaseException] = None
    for handler in list(_handlers[event]):
        try:
            handler()
        except Exception as error:  # The other handlers still run; the caller reports it.
            failure = failure or error
    if failure is not None:
        raise failure


@overload
def on(event: str) -> Callable[[H], H]: ...


@overload
def on(event: str, function: H) -> H: ...


def on(event: str, function: Optional[Any] = None) -> Union[Any, Callable[[Any], Any]]:
    """Has a function called after each change of the "selection", of a "document" (opened, closed, saved, another
    one active) or of the "model": at the end of the line that made the changes, once for all of them. Before
    the application closes ("closing"), a function that returns False keeps it open. Returns the function, so it
    is also a decorator: @quillet.on("model")."""
    global _listens
    if event != "closing":
        _require(event)
    if function is None:
        return lambda given: on(event, given)
    if event == "closing":
        _quillet.on_closing_down(function)
        return function
    if not _listens:
        _quillet.listen(_heard)
        _listens = True
    _handlers[event].append(function)
    return function


def off(event: str, function: Handler) -> None:
    """Stops calling it. Raises ValueError if it isn't called."""
    if event == "closing":
        _quillet.off_closing_down(function)
        return
    _require(event)
    _handlers[event].remove(function)
