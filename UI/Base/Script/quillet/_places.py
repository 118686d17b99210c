"""Placements as matrices, and the lines that move a component to one."""

import math
from typing import Iterator, Sequence, Tuple

from ._ask import ask, line
from ._transactions import transaction

Row = Tuple[float, float, float, float]
Matrix = Tuple[Row, Row, Row, Row]
Rows = Sequence[Sequence[float]]
Triple = Tuple[float, float, float]

#: Smaller rotations are rounding errors.
_LEAST_TURN = 1e-12


def product(a: Rows, b: Rows) -> Matrix:
    return tuple(  # type: ignore[return-value]
        tuple(sum(a[i][k] * b[k][j] for k in range(4)) for j in range(4)) for i in range(4))


def inverse(m: Rows) -> Matrix:
    """Of a rotation with a uniform scale."""
    square = sum(m[k][0] * m[k][0] for k in range(3))
    turned = [[m[j][i] / square for j in range(3)] for i in range(3)]
    back = [-sum(turned[i][k] * m[k][3] for k in range(3)) for i in range(3)]
    return (*((*turned[i], back[i]) for i in range(3)), (0, 0, 0, 1))  # type: ignore[return-value]


def turns_of(m: Rows) -> Iterator[Tuple[str, float]]:
    """The rotations about X, then Y, then Z that make up the matrix's rotation."""
    across = math.hypot(m[2][1], m[2][2])
    if across > 1e-12:
        angles = (math.atan2(m[2][1], m[2][2]), math.atan2(-m[2][0], across), math.atan2(m[1][0], m[0][0]))
    else:
        # A quarter turn about Y, where X and Z have the same effect.
        angles = (math.atan2(-m[1][2], m[1][1]), math.atan2(-m[2][0], across), 0.0)
    for axis, angle in zip("XYZ", angles):
        if abs(angle) > _LEAST_TURN:
            yield axis, angle


def about(axis: Sequence[float], angle: float) -> Matrix:
    """A rotation about an axis through the origin."""
    length = math.sqrt(sum(part * part for part in axis))
    if not length > 0:
        raise ValueError("an axis isn't zero")
    x, y, z = (part / length for part in axis)
    c, s = math.cos(angle), math.sin(angle)
    t = 1 - c
    return ((t * x * x + c, t * x * y - s * z, t * x * z + s * y, 0),
            (t * x * y + s * z, t * y * y + c, t * y * z - s * x, 0),
            (t * x * z - s * y, t * y * z + s * x, t * z * z + c, 0), (0, 0, 0, 1))


def check(m: Rows) -> None:
    if len(m) != 4 or any(len(row) != 4 for row in m) or tuple(m[3]) != (0, 0, 0, 1):
        raise ValueError("a placement is four rows of four numbers, the last 0, 0, 0, 1")
    for i in range(3):
        for j in range(i, 3):
            if abs(sum(m[i][k] * m[j][k] for k in range(3)) - (i == j)) > 1e-6:
                raise ValueError("a placement is a motion, without scale or mirror")
    if (m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0])
            + m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0])) < 0:
        raise ValueError("a placement is a motion, without scale or mirror")


def move(path: str, motion: Rows, name: str) -> None:
    """Moves a component by a motion in the model's coordinates."""
    turns = list(turns_of(motion))
    way = [motion[i][3] for i in range(3)]
    if not turns and not any(way):
        return
    with transaction(name):
        for axis, angle in turns:
            line("Design.Rotate")(path, axis, f"{angle!r} rad", "Origin")
        if any(way):
            line("Design.Move")(path, *(f"{part!r} mm" for part in way))


def place(key: str, placement: Rows) -> None:
    """Moves a component to a placement in its parent."""
    check(placement)
    told = ask("Component", key, Id=True, Place=True)
    now, own = told["place"], told["placement"]
    parent = product(now, inverse(own))
    move(told["path"], product(product(parent, placement), inverse(now)), "Place")
