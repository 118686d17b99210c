from typing import Any, Dict, Iterable, Iterator, List, Optional, Tuple, Union

from ._ask import ask

Triple = Tuple[float, float, float]
Bounds = Tuple[Triple, Triple]
Matrix = Tuple[Tuple[float, float, float, float], ...]


def _bounds(path: str) -> Optional[Bounds]:
    corners = ask("Bounds", path)
    return (tuple(corners[0]), tuple(corners[1])) if corners else None


class Body:
    """The body of a component. Measured at the first question, and once for all that share it."""

    __slots__ = ("_path", "_name", "_facts")

    def __init__(self, path: str, name: str) -> None:
        self._path = path
        self._name = name
        self._facts: Optional[Dict[str, Any]] = None

    @property
    def path(self) -> str:
        """That of its component."""
        return self._path

    @property
    def name(self) -> str:
        return self._name

    def _fact(self, name: str) -> Any:
        if self._facts is None:
            self._facts = ask("Body", self.path)
        return self._facts[name]

    @property
    def volume(self) -> float:
        return self._fact("volume")

    @property
    def area(self) -> float:
        return self._fact("area")

    @property
    def closed(self) -> bool:
        """Whether it encloses a space, so that its volume is one."""
        return self._fact("closed")

    @property
    def solids(self) -> int:
        return self._fact("solids")

    @property
    def faces(self) -> int:
        return self._fact("faces")

    @property
    def bounds(self) -> Optional[Bounds]:
        """The lowest and the highest corner of its triangles, in the model's coordinates."""
        return _bounds(self.path)

    def __repr__(self) -> str:
        return f"Body({self.path!r})"


class Component:
    """A component of the active model, as it was when it was asked for. A name or a visibility that is given
    to it is given to the model, as one step."""

    __slots__ = ("_path", "_name", "_visible", "_placement", "_body", "_children")

    def __init__(self, told: Dict[str, Any]) -> None:
        self._path: str = told["path"]
        self._name: str = told["name"]
        self._visible: bool = told["visible"]
        self._placement: Matrix = tuple(tuple(row) for row in told["placement"])
        self._body: Optional[Body] = Body(self._path, told["body"]) if "body" in told else None
        self._children: List[Any] = told["children"]

    @property
    def path(self) -> str:
        """As the lines of Measure take it; empty for the model itself."""
        return self._path

    @property
    def name(self) -> str:
        return self._name

    @name.setter
    def name(self, name: str) -> None:
        import Script
        import VuCommands

        before = ask("Selection")
        Script.Select(self._path)
        try:
            VuCommands.RenameCommand(name)
            (renamed,) = ask("Selection")
            # What was selected in it has another path as well.
            before = [renamed + one[len(self._path):] if (one + "/").startswith(self._path + "/") else one
                      for one in before]
        finally:
            Script.Select(*before)
        self.__init__(ask("Component", renamed))  # type: ignore[misc]

    @property
    def visible(self) -> bool:
        return self._visible

    @visible.setter
    def visible(self, visible: bool) -> None:
        import Design

        (Design.Show if visible else Design.Hide)(self._path)
        self._visible = visible

    @property
    def placement(self) -> Matrix:
        """In the parent, as rows."""
        return self._placement

    @property
    def body(self) -> Optional[Body]:
        return self._body

    @property
    def children(self) -> List["Component"]:
        if self._children and isinstance(self._children[0], str):
            self._children = ask("Component", self._path, Deep=True)["children"]
        self._children = [c if isinstance(c, Component) else Component(c) for c in self._children]
        return list(self._children)

    def walk(self) -> Iterator["Component"]:
        """This component, and all below it."""
        yield self
        for child in self.children:
            yield from child.walk()

    @property
    def bounds(self) -> Optional[Bounds]:
        """The lowest and the highest corner of its triangles and those below it, in the model's coordinates;
        None if there are none."""
        return _bounds(self.path)

    def __repr__(self) -> str:
        return f"Component({self.path!r})"


Object = Union[str, Component, Body]


def path_of(what: Object) -> str:
    return what if isinstance(what, str) else what.path


def model() -> Component:
    """The root of the active model."""
    return Component(ask("Component"))


def component(path: str) -> Component:
    """The component of that path."""
    return Component(ask("Component", path))


class Selection:
    """What is selected in the active model, as paths."""

    __slots__ = ()

    def __iter__(self) -> Iterator[str]:
        return iter(ask("Selection"))

    def __len__(self) -> int:
        return len(ask("Selection"))

    def set(self, objects: Iterable[Object]) -> None:
        """Selects these in place of all others."""
        import Script

        Script.Select(*(path_of(what) for what in objects))

    def clear(self) -> None:
        self.set(())
