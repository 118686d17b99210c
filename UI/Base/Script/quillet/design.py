"""Creates and edits components of the active design, and returns them as objects.

    from quillet import design
    plate = design.box(80, 50, 8, name="Plate")
    hole = design.cylinder(4, 8, at=(15, 25, 0))
    holes = [hole, *design.pattern(hole, "X", 25, 3)]
    design.subtract(plate, *holes)
    design.fillet(plate.edges.parallel_to("Z")[:4], 5)

Each function runs a line of the area Design, so that a recording has that line, and undo one step. Lengths are in
mm and angles in radians; where a text is taken as well, it may have a unit: "1/2 in", "45 deg". What can't be done raises
CommandError, and leaves the design as it was.
"""

import math
from typing import Any, Callable, Iterable, List, Optional, Sequence, Tuple, Union

import _quillet

from ._ask import ask, line
from ._colours import Colour, code_of
from ._model import Component, component, path_of, paths_of
from ._places import about as _about
from ._places import move as _move
from ._places import product as _product
from ._topology import Direction, Edge, direction_of
from ._transactions import transaction

Triple = Tuple[float, float, float]
Point = Sequence[float]
#: A number of mm, or a text with a unit.
Length = Union[float, str]
#: A number of radians, or a text with a unit.
Angle = Union[float, str]
#: A component, or the path of one.
Part = Union[Component, str]
#: An edge, its path, or any number of these.
SomeEdges = Union[Edge, str, Iterable[Union[Edge, str]]]

_ORIGIN = (0.0, 0.0, 0.0)


def _length(value: Length) -> str:
    return value if isinstance(value, str) else f"{float(value)!r} mm"


def _angle(value: Angle) -> str:
    return value if isinstance(value, str) else f"{float(value)!r} rad"


def _object(part: Part) -> Component:
    return component(part) if isinstance(part, str) else part


def _added(run: Callable[[], Any]) -> List[Component]:
    _quillet.forget_added()
    run()
    return [Component(told) for told in ask("Added")]


def _primitive(kind: str, sizes: Sequence[float], at: Point, direction: Direction, name: Optional[str],
               colour: Union[Colour, str, None]) -> Component:
    def run() -> List[Component]:
        return _added(lambda: line("Design." + kind)(*map(float, sizes), tuple(map(float, at)),
                                                     direction_of(direction)))

    if name is None and colour is None:
        return run()[-1]
    with transaction(kind):
        made = run()[-1]
        if name is not None:
            made.name = name
        if colour is not None:
            made.colour = colour
    return made


def box(dx: float, dy: float, dz: float, at: Point = _ORIGIN, direction: Direction = "Z", *,
        name: Optional[str] = None, colour: Union[Colour, str, None] = None) -> Component:
    """Adds a box of these sizes, with its corner at the point and its height in the direction."""
    return _primitive("Box", (dx, dy, dz), at, direction, name, colour)


def cylinder(radius: float, height: float, at: Point = _ORIGIN, direction: Direction = "Z", *,
             name: Optional[str] = None, colour: Union[Colour, str, None] = None) -> Component:
    """Adds a cylinder that stands on the point in the direction."""
    return _primitive("Cylinder", (radius, height), at, direction, name, colour)


def sphere(radius: float, at: Point = _ORIGIN, direction: Direction = "Z", *,
           name: Optional[str] = None, colour: Union[Colour, str, None] = None) -> Component:
    """Adds a sphere about the point."""
    return _primitive("Sphere", (radius,), at, direction, name, colour)


def cone(radius: float, top_radius: float, height: float, at: Point = _ORIGIN, direction: Direction = "Z", *,
         name: Optional[str] = None, colour: Union[Colour, str, None] = None) -> Component:
    """Adds a cone that stands on the point in the direction; one of its radii may be 0."""
    return _primitive("Cone", (radius, top_radius, height), at, direction, name, colour)


def torus(radius: float, tube_radius: float, at: Point = _ORIGIN, direction: Direction = "Z", *,
          name: Optional[str] = None, colour: Union[Colour, str, None] = None) -> Component:
    """Adds a ring about the point and the direction; its radius reaches to the middle of the tube."""
    return _primitive("Torus", (radius, tube_radius), at, direction, name, colour)


def _combine(kind: str, target: Part, tools: Sequence[Any], keep: bool) -> Component:
    used = paths_of(tools)
    if not used:
        raise TypeError(f"{kind.lower()} needs a body besides the target")
    whole = _object(target)
    line("Design." + kind)(whole.path, *used, Keep=keep)
    return whole


def join(target: Part, *tools: Union[Part, Iterable[Part]], keep: bool = False) -> Component:
    """Joins the target and the others into one body; the others are consumed unless `keep` is set. Returns the
    target, as the other two functions do."""
    return _combine("Join", target, tools, keep)


def subtract(target: Part, *tools: Union[Part, Iterable[Part]], keep: bool = False) -> Component:
    """Subtracts the others from the target."""
    return _combine("Subtract", target, tools, keep)


def intersect(target: Part, *tools: Union[Part, Iterable[Part]], keep: bool = False) -> Component:
    """Reduces the target to what it has in common with the others."""
    return _combine("Intersect", target, tools, keep)


def _blend(kind: str, edges: SomeEdges, size: Length) -> Component:
    paths = paths_of([edges])
    if not paths:
        raise ValueError(f"{kind.lower()}: there are no edges")
    changed = component(paths[0])
    line("Design." + kind)(_length(size), *paths)
    return changed


def fillet(edges: SomeEdges, radius: Length) -> Component:
    """Rounds the edges. Returns the component that has the first of them."""
    return _blend("Fillet", edges, radius)


def chamfer(edges: SomeEdges, distance: Length) -> Component:
    """Chamfers the edges, by the distance on both sides. Returns the component that has the first of them."""
    return _blend("Chamfer", edges, distance)


def move(part: Part, by: Sequence[Length]) -> Component:
    """Moves a component along the three axes of the model. Returns it."""
    moved = _object(part)
    x, y, z = by
    line("Design.Move")(moved.path, _length(x), _length(y), _length(z))
    return moved


def rotate(part: Part, axis: Direction, angle: Angle, about: Union[Point, str] = "Middle") -> Component:
    """Rotates a component about an axis through its middle, "Origin", or a point. Returns it."""
    turned = _object(part)
    if isinstance(axis, str) and axis.upper() in ("X", "Y", "Z"):
        centre = [about] if isinstance(about, str) else ["Point", *map(_length, about)]
        line("Design.Rotate")(turned.path, axis.upper(), _angle(angle), *centre)
        return turned
    if isinstance(angle, str):
        raise TypeError("about an axis of its own a turn is a number of radians")
    centre_point: Sequence[float] = _ORIGIN
    if not isinstance(about, str):
        centre_point = about
    elif about == "Middle":
        bounds = turned.bounds or (_ORIGIN, _ORIGIN)
        centre_point = [(low + high) / 2 for low, high in zip(*bounds)]
    back = ((1, 0, 0, -centre_point[0]), (0, 1, 0, -centre_point[1]), (0, 0, 1, -centre_point[2]), (0, 0, 0, 1))
    there = ((1, 0, 0, centre_point[0]), (0, 1, 0, centre_point[1]), (0, 0, 1, centre_point[2]), (0, 0, 0, 1))
    _move(turned.path, _product(there, _product(_about(direction_of(axis), angle), back)), "Rotate")
    return turned


def copy(part: Part, by: Sequence[Length] = _ORIGIN) -> Component:
    """Adds another occurrence of the component at that offset: a change to the body of one changes both.
    Returns the new one."""
    x, y, z = by
    return _added(lambda: line("Design.Copy")(path_of(part), _length(x), _length(y), _length(z)))[-1]


def mirror(part: Part, across: str = "X", at: Length = 0.0) -> Component:
    """Adds the component's mirror image at the plane perpendicular to the axis. Returns the image, a separate
    part."""
    return _added(lambda: line("Design.Mirror")(path_of(part), across.upper(), _length(at)))[-1]


def pattern(part: Part, axis: str, spacing: Length, count: int, second_axis: Optional[str] = None,
            second_spacing: Length = 0.0, second_count: int = 1) -> List[Component]:
    """Repeats the component along an axis, or along two as a grid; the counts include it. Returns the copies."""
    second: List[Any] = []
    if second_axis is not None:
        second = [second_axis.upper(), _length(second_spacing), int(second_count)]
    return _added(lambda: line("Design.Pattern")(path_of(part), axis.upper(), _length(spacing), int(count), *second))


def circular_pattern(part: Part, axis: str = "Z", count: int = 4, angle: Angle = 2 * math.pi,
                     about: Point = _ORIGIN) -> List[Component]:
    """Repeats the component around an axis through the point, evenly over the angle; the count includes it.
    Returns the copies."""
    return _added(lambda: line("Design.CircularPattern")(path_of(part), axis.upper(), _angle(angle), int(count),
                                                         "Point", *map(_length, about)))


def colour(things: Any, value: Union[Colour, str, None], opacity: float = 1.0) -> None:
    """Colours components, bodies and faces, one or many: by three numbers from 0 to 255, "#2f86e0", a name such
    as "Teal", or None for no colour of their own."""
    paths = paths_of([things])
    if paths:
        line("Design.Colour")(code_of(value, opacity), *paths)


def delete(*parts: Union[Part, Iterable[Part]]) -> None:
    """Deletes components with everything in them."""
    paths = paths_of(parts)
    if not paths:
        return
    selected = ask("Selection")
    line("Script.Select")(*paths)
    try:
        line("Commands.Start")("DeleteCommand")
    except _quillet.CommandError:
        line("Script.Select")(*selected)
        raise
