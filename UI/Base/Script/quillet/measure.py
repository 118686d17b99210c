"""Measures objects of the active model, which are paths such as "Plate:1/Bolt:2/Face3", or components."""

from typing import Tuple

from ._ask import line
from ._model import Object, path_of

Triple = Tuple[float, float, float]


def _measure(command: str, *objects: Object) -> Tuple[float, ...]:
    text = line("Measure." + command)(*(path_of(what) for what in objects), Plain=True)
    return tuple(float(part) for part in text.split(","))


def length(edge: Object) -> float:
    return _measure("Length", edge)[0]


def radius(edge_or_face: Object) -> float:
    return _measure("Radius", edge_or_face)[0]


def area(what: Object) -> float:
    return _measure("Area", what)[0]


def volume(what: Object) -> float:
    return _measure("Volume", what)[0]


def loop_length(face: Object) -> float:
    """The length of the edges around the outside of a face."""
    return _measure("LoopLength", face)[0]


def position(what: Object) -> Triple:
    x, y, z = _measure("Position", what)
    return (x, y, z)


def distance(one: Object, other: Object) -> float:
    """The shortest distance."""
    return _measure("Distance", one, other)[0]


def delta(one: Object, other: Object) -> Triple:
    """The shortest way from one to the other."""
    x, y, z = _measure("Delta", one, other)
    return (x, y, z)


def angle(one: Object, other: Object, *third: Object) -> float:
    """The angle of two objects in radians, or at the second of three."""
    return _measure("Angle", one, other, *third)[0]
