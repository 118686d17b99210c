from typing import Any, Dict, Iterable, Iterator, List, Optional, Sequence, Tuple, Union, overload

import _quillet

from ._ask import ask, line
from ._colours import Colour, code_of, colour_of
from ._places import Matrix, place
from ._topology import Edges, Faces, Parts, Vertices

Triple = Tuple[float, float, float]
Bounds = Tuple[Triple, Triple]


def _bounds(key: str) -> Optional[Bounds]:
    corners = ask("Bounds", key, Id=True)
    return (tuple(corners[0]), tuple(corners[1])) if corners else None  # type: ignore[return-value]


class Body:
    """The body of a component, in its present state. Measured on first use, and once for all that share it."""

    __slots__ = ("_component", "_facts", "_parts", "_revision")

    def __init__(self, component: "Component") -> None:
        self._component = component
        self._facts: Optional[Dict[str, Any]] = None
        self._parts: Optional[Parts] = None
        self._revision = -1

    def _refresh(self) -> None:
        revision = _quillet.revision()
        if revision != self._revision:
            self._facts = self._parts = None
            self._revision = revision

    @property
    def path(self) -> str:
        """That of its component."""
        return self._component.path

    @property
    def name(self) -> str:
        return str(self._component._told()["body"])

    def _fact(self, name: str) -> Any:
        self._refresh()
        if self._facts is None:
            self._facts = ask("Body", self._component._key, Id=True)
        return self._facts[name]

    @property
    def volume(self) -> float:
        return float(self._fact("volume"))

    @property
    def area(self) -> float:
        return float(self._fact("area"))

    @property
    def centre(self) -> Triple:
        """The centre of mass, in the model's coordinates; that of its area if it isn't closed."""
        x, y, z = self._fact("centre")
        return (x, y, z)

    @property
    def inertia(self) -> Tuple[Triple, Triple, Triple]:
        """The inertia tensor about the centre of mass, along the model's axes, in mm5: multiply it by a density for
        that of the mass. Off the diagonal are the products of inertia, with their sign. CommandError if the body
        isn't closed."""
        if not self.closed:
            raise _quillet.CommandError(f'"{self._component.name}" isn\'t closed, so that it has no volume.')
        x, y, z = self._fact("inertia")
        return (tuple(x), tuple(y), tuple(z))  # type: ignore[return-value]

    @property
    def closed(self) -> bool:
        """Whether it encloses a space, so that its volume is meaningful."""
        return bool(self._fact("closed"))

    @property
    def solids(self) -> int:
        """How many there are."""
        return int(self._fact("solids"))

    def _all(self) -> Parts:
        self._refresh()
        if self._parts is None:
            self._parts = Parts(self._component._key, self.path)
        return self._parts

    @property
    def faces(self) -> Faces:
        """Its faces, in the order of their numbers: the first is Face1."""
        return self._all().faces

    @property
    def edges(self) -> Edges:
        """Its edges, without invisible ones such as the seam of a cylinder."""
        return self._all().edges

    @property
    def vertices(self) -> Vertices:
        return self._all().vertices

    @property
    def bounds(self) -> Optional[Bounds]:
        """The lowest and the highest corner of its triangles' bounding box, in the model's coordinates."""
        return _bounds(self._component._key)

    @property
    def mesh(self) -> Dict[str, memoryview]:
        """Its triangles as displayed, in its own coordinates, as buffers that numpy.asarray takes without copying:
        positions, normals, triangles, faces (first triangle, count, colour), edge_points, edge_starts,
        vertices. They don't change with the body."""
        return _quillet.mesh(self._component._key)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Body) and self._component == other._component

    def __hash__(self) -> int:
        return hash(self._component)

    def __repr__(self) -> str:
        return f"Body({self.path!r})"


class _ColourOfComponent:
    """Its own colour, or that of its body, as red, green and blue of the screen, each from 0 to 255; None if it
    has none. Can be set to three such numbers, to a text such as "#2f86e0" or "Teal", or to None to remove it."""

    @overload
    def __get__(self, owner: None, kind: Any = None) -> "_ColourOfComponent": ...

    @overload
    def __get__(self, owner: "Component", kind: Any = None) -> Optional[Colour]: ...

    def __get__(self, owner: Optional["Component"], kind: Any = None) -> Any:
        return self if owner is None else colour_of(owner._own_colour())

    def __set__(self, owner: "Component", colour: Union[Colour, str, None]) -> None:
        line("Design.Colour")(code_of(colour, owner.opacity), owner.path)


class Component:
    """A component of a model. It stays the same object when it is renamed or moved, and its properties are always
    the present ones. Setting one (name, visible, colour, opacity, placement) changes the model, in one step."""

    __slots__ = ("_key", "_facts", "_revision", "_body", "_children")

    def __init__(self, told: Dict[str, Any]) -> None:
        self._key: str = told["id"]
        self._body: Optional[Body] = None
        self._take(told)

    def _take(self, told: Dict[str, Any]) -> None:
        self._facts = told
        self._children: Optional[List["Component"]] = None
        self._revision = _quillet.revision()

    def _told(self) -> Dict[str, Any]:
        if self._revision != _quillet.revision():
            self._take(ask("Component", self._key, Id=True))
        return self._facts

    @property
    def path(self) -> str:
        """Its path as used in lines, such as "Plate:1/Bolt:2"; empty for the model itself."""
        return str(self._told()["path"])

    @property
    def name(self) -> str:
        return str(self._told()["name"])

    @name.setter
    def name(self, name: str) -> None:
        selected = [_Selected(path) for path in ask("Selection")]
        line("Script.Select")(self.path)
        try:
            line("VuCommands.RenameCommand")(name)
        finally:
            line("Script.Select")(*(each.path for each in selected))

    @property
    def visible(self) -> bool:
        return bool(self._told()["visible"])

    @visible.setter
    def visible(self, visible: bool) -> None:
        line("Design.Show" if visible else "Design.Hide")(self.path)

    colour = _ColourOfComponent()

    @property
    def opacity(self) -> float:
        """From 0, which is invisible, to 1."""
        colour = self._own_colour()
        return float(colour[3]) if colour else 1.0

    @opacity.setter
    def opacity(self, opacity: float) -> None:
        colour = self.colour or colour_of(self._told().get("body colour")) or (184, 186, 191)
        line("Design.Colour")(code_of(colour, opacity), self.path)

    def _own_colour(self) -> Optional[Sequence[float]]:
        told = self._told()
        return told["colour"] or told.get("body colour")

    @property
    def placement(self) -> Matrix:
        """In the parent, as four rows."""
        return tuple(tuple(row) for row in self._told()["placement"])  # type: ignore[return-value]

    @placement.setter
    def placement(self, placement: Sequence[Sequence[float]]) -> None:
        if not self.path:
            raise AttributeError("the model itself has no place")
        place(self._key, placement)

    @property
    def body(self) -> Optional[Body]:
        if "body" not in self._told():
            return None
        if self._body is None:
            self._body = Body(self)
        return self._body

    def _solid(self) -> Body:
        body = self.body
        if body is None:
            raise _quillet.CommandError(f'"{self.name}" has no body of its own.')
        return body

    @property
    def faces(self) -> Faces:
        """Those of its body."""
        return self._solid().faces

    @property
    def edges(self) -> Edges:
        """Those of its body."""
        return self._solid().edges

    @property
    def vertices(self) -> Vertices:
        """Those of its body."""
        return self._solid().vertices

    @property
    def children(self) -> List["Component"]:
        told = self._told()
        if self._children is None:
            below = told["children"]
            if below and isinstance(below[0], str):
                below = ask("Component", self._key, Id=True, Deep=True)["children"]
            self._children = [Component(child) for child in below]
        return list(self._children)

    def walk(self) -> Iterator["Component"]:
        """This component and everything below it."""
        yield self
        for child in self.children:
            yield from child.walk()

    @property
    def bounds(self) -> Optional[Bounds]:
        """The lowest and the highest corner of the box around its triangles and those below it, in the model's
        coordinates; None if there are none."""
        return _bounds(self._key)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Component) and self._key == other._key

    def __hash__(self) -> int:
        return hash(self._key)

    def __repr__(self) -> str:
        try:
            return f"Component({self.path!r})"
        except _quillet.CommandError:
            return "<Component that isn't in the active model>"


class _Selected:
    """A selected object, while names change."""

    def __init__(self, path: str) -> None:
        self._component = component(path)
        self._rest = path[len(self._component.path):]

    @property
    def path(self) -> str:
        return self._component.path + self._rest


Object = Union[str, Component, Body, Any]


def path_of(what: Object) -> str:
    return what if isinstance(what, str) else str(what.path)


def paths_of(things: Iterable[Any]) -> List[str]:
    """The paths of objects, and of lists of such."""
    paths: List[str] = []
    for thing in things:
        if isinstance(thing, str) or hasattr(thing, "path"):
            paths.append(path_of(thing))
        else:
            paths.extend(paths_of(thing))
    return paths


def model() -> Component:
    """The root of the active model."""
    return Component(ask("Component"))


def component(path: str) -> Component:
    """The component with that path."""
    return Component(ask("Component", path))


class Selection:
    """The selection in the active model, as paths."""

    __slots__ = ()

    def __iter__(self) -> Iterator[str]:
        return iter(ask("Selection"))

    def __len__(self) -> int:
        return len(ask("Selection"))

    def set(self, objects: Iterable[Object]) -> None:
        """Selects these in place of all others: components, bodies, faces, edges, vertices, or paths."""
        line("Script.Select")(*paths_of(objects))

    def clear(self) -> None:
        self.set(())
