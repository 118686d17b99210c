"""The faces, edges and vertices of bodies."""

import math
from typing import Any, Callable, Dict, Generic, Iterable, Iterator, List, NamedTuple, Optional, Sequence, Tuple
from typing import Type, TypeVar, Union, overload

import _quillet

from ._ask import ask, line

Triple = Tuple[float, float, float]
Direction = Union[str, Sequence[float]]

_AXES: Dict[str, Triple] = {"X": (1.0, 0.0, 0.0), "Y": (0.0, 1.0, 0.0), "Z": (0.0, 0.0, 1.0)}
#: The sine of an angle that counts as zero.
_PARALLEL = 1e-6


class Axis(NamedTuple):
    """The axis of something round."""

    point: Triple
    direction: Triple


def direction_of(what: Direction) -> Triple:
    """ "X", "-Z" and the like, or three numbers, as a direction of length 1."""
    if isinstance(what, str):
        sign = -1.0 if what.startswith("-") else 1.0
        named = _AXES.get(what.lstrip("+-").upper())
        if named is None:
            raise ValueError(f'"{what}" is not an axis; write X, Y, Z, or -X, -Y, -Z, or three numbers')
        return (sign * named[0], sign * named[1], sign * named[2])
    x, y, z = what
    length = math.sqrt(x * x + y * y + z * z)
    if not length > 0:
        raise ValueError("a direction isn't zero")
    return (x / length, y / length, z / length)


def _dot(a: Triple, b: Triple) -> float:
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def _are_parallel(a: Triple, b: Triple) -> bool:
    return 1 - abs(_dot(a, b)) < _PARALLEL * _PARALLEL


class Part:
    """A part of a body, in its state when it was queried. Its path follows it when the body changes."""

    __slots__ = ("_parts", "_index", "_told", "_path", "_revision")
    _kind = "Part"

    def __init__(self, parts: "Parts", index: int, told: Sequence[Any]) -> None:
        self._parts = parts
        self._index = index
        self._told = told
        self._path = f"{parts.path}/Body1/{self._kind}{index + 1}"
        self._revision = parts.revision

    @property
    def path(self) -> str:
        """Its path as used in lines, such as "Plate:1/Body1/Edge3". Raises CommandError if a change of the body has
        removed it, or split it."""
        revision = _quillet.revision()
        if revision != self._revision:
            parts = self._parts
            self._path = line("Script.Successor")(parts.key, self._kind, self._index + 1, parts.shape, Id=True)
            self._revision = revision
        return self._path

    @property
    def number(self) -> int:
        """The number in its path, from 1."""
        return self._index + 1

    @property
    def kind(self) -> str:
        """For a face plane, cylinder, cone, sphere, torus or freeform; for an edge line, circle or curve; vertex."""
        return str(self._told[0])

    def __eq__(self, other: object) -> bool:
        return (type(other) is type(self) and isinstance(other, Part) and self._index == other._index
                and self._parts.is_same(other._parts))

    def __hash__(self) -> int:
        return hash((self._kind, self._index, self._parts.key))

    def __repr__(self) -> str:
        return f"<{self._kind}{self._index + 1}, {self.kind}>"


def _triple(values: Sequence[float]) -> Triple:
    return (values[0], values[1], values[2])


class Vertex(Part):
    """A corner of a body."""

    __slots__ = ()
    _kind = "Vertex"

    @property
    def position(self) -> Triple:
        return _triple(self._told[2])

    @property
    def centre(self) -> Triple:
        """Its position."""
        return _triple(self._told[2])

    @property
    def edges(self) -> "Edges":
        """Those that end here."""
        parts = self._parts
        return Edges(parts.edges[i] for i in parts.edges_of_vertex[self._index])


class _Sized(Part):
    __slots__ = ()
    _extents = "extents"

    @property
    def radius(self) -> Optional[float]:
        """The radius of round ones; for a torus that of its tube. None for others, and for a cone."""
        radius = self._told[3]
        return None if radius is None else float(radius)

    def _extent(self) -> Sequence[Any]:
        found: Sequence[Any] = getattr(self._parts, self._extents)[self._index]
        if not found:
            raise _quillet.CommandError(f"{self._kind}{self._index + 1} can't be measured.")
        return found


class Edge(_Sized):
    """An edge of a body."""

    __slots__ = ()
    _kind = "Edge"
    _extents = "edge_extents"

    @property
    def length(self) -> float:
        return float(self._extent()[0])

    @property
    def centre(self) -> Triple:
        """Its middle, or the centre of a circle."""
        return _triple(self._extent()[1])

    @property
    def direction(self) -> Optional[Triple]:
        """The direction of a straight edge."""
        return _triple(self._told[1]) if self._told[0] == "line" else None

    @property
    def axis(self) -> Optional[Axis]:
        """The axis of a circle."""
        return Axis(_triple(self._told[2]), _triple(self._told[1])) if self._told[0] == "circle" else None

    @property
    def vertices(self) -> "Vertices":
        """Its ends; for a full circle none without a seam, and one with a seam."""
        parts = self._parts
        return Vertices(parts.vertices[i] for i in self._told[4])

    @property
    def faces(self) -> "Faces":
        """Those that meet here."""
        parts = self._parts
        return Faces(parts.faces[i] for i in parts.faces_of_edge[self._index])

    @property
    def neighbours(self) -> "Edges":
        """The edges that share an end with it."""
        parts = self._parts
        near = {i for vertex in self._told[4] for i in parts.edges_of_vertex[vertex]} - {self._index}
        return Edges(parts.edges[i] for i in sorted(near))


class Face(_Sized):
    """A face of a body."""

    __slots__ = ()
    _kind = "Face"
    _extents = "face_extents"

    @property
    def area(self) -> float:
        return float(self._extent()[0])

    @property
    def centre(self) -> Triple:
        """Its centre of mass, or the centre of a sphere."""
        return _triple(self._extent()[1])

    @property
    def normal(self) -> Optional[Triple]:
        """The normal of a flat face, pointing away from the body."""
        return _triple(self._told[1]) if self._told[0] == "plane" else None

    @property
    def axis(self) -> Optional[Axis]:
        """The axis of a cylinder, a cone or a torus."""
        if self._told[0] not in ("cylinder", "cone", "torus"):
            return None
        return Axis(_triple(self._told[2]), _triple(self._told[1]))

    @property
    def concave(self) -> bool:
        """Whether a cylinder, a cone or a sphere curves into the body, as a hole does."""
        return bool(self._told[5])

    @property
    def edges(self) -> "Edges":
        """Those that bound it."""
        parts = self._parts
        return Edges(parts.edges[i] for i in self._told[4])

    @property
    def vertices(self) -> "Vertices":
        """Those of its edges."""
        parts = self._parts
        own = {vertex for edge in self._told[4] for vertex in parts.told["edges"][edge][4]}
        return Vertices(parts.vertices[i] for i in sorted(own))

    @property
    def neighbours(self) -> "Faces":
        """The faces that share an edge with it."""
        parts = self._parts
        near = {i for edge in self._told[4] for i in parts.faces_of_edge[edge]} - {self._index}
        return Faces(parts.faces[i] for i in sorted(near))


P = TypeVar("P", bound=Part)
L = TypeVar("L", bound="PartList[Any]")


class PartList(Sequence[P], Generic[P]):
    """Parts of a body, in order; each filter returns another such list."""

    __slots__ = ("_all",)

    def __init__(self, parts: Iterable[P] = ()) -> None:
        self._all: List[P] = list(parts)

    @overload
    def __getitem__(self, index: int) -> P: ...

    @overload
    def __getitem__(self: L, index: slice) -> L: ...

    def __getitem__(self, index: Any) -> Any:
        found = self._all[index]
        return type(self)(found) if isinstance(index, slice) else found

    def __len__(self) -> int:
        return len(self._all)

    def __iter__(self) -> Iterator[P]:
        return iter(self._all)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Sequence) and list(self) == list(other)

    def __add__(self: L, other: Iterable[Any]) -> L:
        """These, followed by those of the others that aren't among them."""
        return type(self)([*self._all, *(each for each in other if each not in self._all)])

    def __sub__(self: L, other: Iterable[Any]) -> L:
        without = set(other)
        return type(self)(each for each in self._all if each not in without)

    def __and__(self: L, other: Iterable[Any]) -> L:
        both = set(other)
        return type(self)(each for each in self._all if each in both)

    @property
    def paths(self) -> List[str]:
        """Their paths as used in lines."""
        return [each.path for each in self._all]

    def where(self: L, test: Callable[[Any], bool]) -> L:
        """Those for which the test is true."""
        return type(self)(each for each in self._all if test(each))

    def sorted(self: L, key: Callable[[Any], Any], reverse: bool = False) -> L:
        return type(self)(sorted(self._all, key=key, reverse=reverse))

    def of_kind(self: L, *kinds: str) -> L:
        """Such as faces.of_kind("plane") or edges.of_kind("line", "circle")."""
        return type(self)(each for each in self._all if each.kind in kinds)

    def along(self: L, direction: Direction) -> L:
        """Sorted by how far their centres are in the direction, the farthest last: the highest face is
        faces.along("Z")[-1]."""
        to = direction_of(direction)
        return type(self)(sorted(self._all, key=lambda each: _dot(each.centre, to)))

    def farthest(self: L, direction: Direction, tolerance: float = 1e-6) -> L:
        """Those whose centres are farthest in the direction, within the tolerance in mm."""
        to = direction_of(direction)
        far = [(_dot(each.centre, to), each) for each in self._all]
        most = max((how for how, _ in far), default=0.0)
        return type(self)(each for how, each in far if how >= most - tolerance)

    def near(self: L, point: Sequence[float]) -> L:
        """Sorted by the distance of their centres from the point, the nearest first."""
        return type(self)(sorted(self._all, key=lambda each: math.dist(each.centre, point)))

    def within(self: L, low: Sequence[float], high: Sequence[float]) -> L:
        """Those whose centres are in the box."""
        return type(self)(each for each in self._all
                          if all(a <= c <= b for a, c, b in zip(low, each.centre, high)))

    def __repr__(self) -> str:
        return f"[{', '.join(map(repr, self._all))}]"


class _SizedList(PartList[P]):
    __slots__ = ()

    def round(self: L, radius: Optional[float] = None, tolerance: float = 1e-6) -> L:
        """Those that have a radius, or this radius."""
        return type(self)(each for each in self._all if each.radius is not None
                          and (radius is None or abs(each.radius - radius) <= tolerance))


class Vertices(PartList[Vertex]):
    """Vertices of a body."""

    __slots__ = ()


class Edges(_SizedList[Edge]):
    """Edges of a body."""

    __slots__ = ()

    def parallel_to(self, direction: Direction) -> "Edges":
        """The straight ones along an axis or a direction."""
        to = direction_of(direction)
        return Edges(each for each in self._all
                     if each._told[0] == "line" and _are_parallel(each._told[1], to))

    def on(self, *faces: Union["Face", Iterable["Face"]]) -> "Edges":
        """Those that bound one of the faces."""
        wanted = {(face._parts.key, edge) for face in _faces_of(faces) for edge in face._told[4]}
        return Edges(each for each in self._all if (each._parts.key, each._index) in wanted)

    def between(self, one: "Face", other: "Face") -> "Edges":
        """Those at which the two faces meet."""
        return self.on(one).on(other)

    def by_length(self) -> "Edges":
        """Sorted from the shortest to the longest."""
        return Edges(sorted(self._all, key=lambda each: each.length))


class Faces(_SizedList[Face]):
    """Faces of a body."""

    __slots__ = ()

    def by_area(self) -> "Faces":
        """Sorted from the smallest to the largest."""
        return Faces(sorted(self._all, key=lambda each: each.area))

    def parallel_to(self, direction: Direction) -> "Faces":
        """The flat ones that contain the direction, and the round ones whose axis is along it."""
        to = direction_of(direction)
        return Faces(each for each in self._all
                     if (each._told[0] == "plane" and abs(_dot(each._told[1], to)) < _PARALLEL)
                     or (each.axis is not None and _are_parallel(each._told[1], to)))

    def facing(self, direction: Direction) -> "Faces":
        """The flat ones whose normal is that direction."""
        to = direction_of(direction)
        return Faces(each for each in self._all if each._told[0] == "plane"
                     and _dot(each._told[1], to) > 0 and _are_parallel(each._told[1], to))

    @property
    def edges(self) -> Edges:
        """Those that bound one of them, each once."""
        return _once(Edges, (edge for each in self._all for edge in each.edges))


def _faces_of(things: Iterable[Any]) -> Iterator[Face]:
    for thing in things:
        if isinstance(thing, Face):
            yield thing
        else:
            yield from _faces_of(thing)


def _once(kind: Type[L], parts: Iterable[Any]) -> L:
    return kind(dict.fromkeys(parts))


class Parts:
    """All parts of a body of one shape, queried together."""

    def __init__(self, key: str, path: str) -> None:
        self.revision = _quillet.revision()
        self.key = key
        self.path = path
        self.told: Dict[str, List[Any]] = ask("Parts", key, Id=True)
        self.shape = str(self.told["shape"])
        self.faces = Faces(Face(self, i, told) for i, told in enumerate(self.told["faces"]))
        self.edges = Edges(Edge(self, i, told) for i, told in enumerate(self.told["edges"]))
        self.vertices = Vertices(Vertex(self, i, told) for i, told in enumerate(self.told["vertices"]))
        self._kept: Dict[str, List[Any]] = {}

    def is_same(self, other: "Parts") -> bool:
        return (self.key, self.shape) == (other.key, other.shape)

    def _keep(self, name: str, find: Callable[[], List[Any]]) -> List[Any]:
        found = self._kept.get(name)
        if found is None:
            found = self._kept[name] = find()
        return found

    def _bounded(self, bounds: str, bounded: str) -> List[List[int]]:
        found: List[List[int]] = [[] for _ in self.told[bounds]]
        for i, told in enumerate(self.told[bounded]):
            for bound in told[4]:
                found[bound].append(i)
        return found

    @property
    def faces_of_edge(self) -> List[List[int]]:
        return self._keep("faces_of_edge", lambda: self._bounded("edges", "faces"))

    @property
    def edges_of_vertex(self) -> List[List[int]]:
        return self._keep("edges_of_vertex", lambda: self._bounded("vertices", "edges"))

    @property
    def face_extents(self) -> List[Any]:
        return self._keep("Faces", lambda: self._measured("Faces"))

    @property
    def edge_extents(self) -> List[Any]:
        return self._keep("Edges", lambda: self._measured("Edges"))

    def _measured(self, what: str) -> List[Any]:
        # The shape measured now must be the one that these parts belong to.
        if _quillet.revision() != self.revision and str(ask("Parts", self.key, Id=True)["shape"]) != self.shape:
            raise _quillet.CommandError("The body has changed: ask it anew for its parts.")
        measured: List[Any] = ask("Extents", self.key, what, Id=True)
        return measured
