"""The pen that draws every picture of the program: strokes, fills and shapes on a grid of 24 by 24.

All pictures are made of strokes of 1.5 units with round ends, in two mid tones that keep a contrast of at
least 3 to 1 on a white toolbar as well as on a dark one. Slate is the thing, blue is what happens to it,
amber is kept for "on" and for warnings.
"""

import math

SLATE = "#6a7d94"
BLUE = "#2f86e0"
AMBER = "#c97a00"
STROKE = 1.5

PICTURES = {}


class Picture:
    """A list of styled paths; the order of the calls is the order of painting."""

    def __init__(self, halo):
        self.halo = halo
        self.paths = []

    def _add(self, attributes, *shapes):
        self.paths.append((attributes, " ".join(shapes)))
        return self

    def line(self, *shapes):
        return self._add("", *shapes)

    def thin(self, *shapes):
        return self._add('stroke-width="1"', *shapes)

    def dashed(self, *shapes):
        return self._add('stroke-dasharray="1.6 2.4"', *shapes)

    def solid(self, *shapes):
        return self._add(f'fill="{SLATE}" stroke="none"', *shapes)

    def shade(self, *shapes, opacity=0.25):
        return self._add(f'fill="{SLATE}" fill-opacity="{opacity}" stroke="none"', *shapes)

    def accent(self, *shapes):
        return self._add(f'stroke="{BLUE}"', *shapes)

    def accent_thin(self, *shapes):
        return self._add(f'stroke="{BLUE}" stroke-width="1"', *shapes)

    def accent_dashed(self, *shapes):
        return self._add(f'stroke="{BLUE}" stroke-dasharray="1.6 2.4"', *shapes)

    def accent_solid(self, *shapes):
        return self._add(f'fill="{BLUE}" stroke="none"', *shapes)

    def tint(self, *shapes, opacity=0.25):
        return self._add(f'fill="{BLUE}" fill-opacity="{opacity}" stroke="none"', *shapes)

    def glow(self, *shapes):
        return self._add(f'stroke="{AMBER}"', *shapes)

    def glow_solid(self, *shapes):
        return self._add(f'fill="{AMBER}" stroke="none"', *shapes)

    def glow_tint(self, *shapes, opacity=0.35):
        return self._add(f'fill="{AMBER}" fill-opacity="{opacity}" stroke="none"', *shapes)

    def svg(self):
        lines = [
            '<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" viewBox="0 0 24 24"',
            f'     fill="none" stroke="{SLATE}" stroke-width="{STROKE}" stroke-linecap="round" stroke-linejoin="round">',
        ]
        if self.halo:
            # A pointer must be seen on a canvas of any colour, its own tones included.
            outline = " ".join(d for a, d in self.paths if 'stroke="none"' not in a or "opacity" not in a)
            lines.append(f'  <path stroke="#ffffff" stroke-opacity="0.85" stroke-width="3.2" d="{outline}"/>')
        for attributes, d in self.paths:
            lines.append(f'  <path {attributes} d="{d}"/>' if attributes else f'  <path d="{d}"/>')
        lines.append("</svg>")
        return "\n".join(lines) + "\n"


def picture(name, halo=False, home="UI/Commands"):
    """Starts the picture whose path under the resources folder of the library `home` is `name`."""
    path = f"{home}/Resources/Icons/{name}.svg"
    if path in PICTURES:
        raise ValueError(f"two pictures named {path}")
    PICTURES[path] = Picture(halo)
    return PICTURES[path]


def n(value):
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def at(x, y):
    return f"{n(x)} {n(y)}"


def poly(*points, closed=False):
    return "M" + " L".join(at(x, y) for x, y in points) + ("Z" if closed else "")


def area(*points):
    return poly(*points, closed=True)


def circle(cx, cy, r):
    return ellipse(cx, cy, r, r)


def ellipse(cx, cy, rx, ry):
    half = f"A{n(rx)} {n(ry)} 0 0 1 "
    return f"M{at(cx - rx, cy)} {half}{at(cx + rx, cy)} {half}{at(cx - rx, cy)}Z"


def rect(x, y, w, h, r=1):
    if not r:
        return area((x, y), (x + w, y), (x + w, y + h), (x, y + h))
    c = f"A{n(r)} {n(r)} 0 0 1 "
    return (f"M{at(x + r, y)} H{n(x + w - r)} {c}{at(x + w, y + r)} V{n(y + h - r)} {c}{at(x + w - r, y + h)}"
            f" H{n(x + r)} {c}{at(x, y + h - r)} V{n(y + r)} {c}{at(x + r, y)}Z")


def on_ellipse(cx, cy, rx, ry, degrees):
    a = math.radians(degrees)
    return cx + rx * math.cos(a), cy + ry * math.sin(a)


def arc(cx, cy, rx, start, end, ry=None):
    """From `start` to `end` degrees; 0 is to the right, and a growing angle turns clockwise on the screen."""
    ry = rx if ry is None else ry
    large = 1 if abs(end - start) > 180 else 0
    sweep = 1 if end > start else 0
    return (f"M{at(*on_ellipse(cx, cy, rx, ry, start))} A{n(rx)} {n(ry)} 0 {large} {sweep} "
            f"{at(*on_ellipse(cx, cy, rx, ry, end))}")


def head(x, y, degrees, size=3):
    """The two strokes of an arrow's head whose tip is at (x, y), flying in the direction `degrees`."""
    left, right = (on_ellipse(x, y, size, size, degrees + turn) for turn in (140, -140))
    return poly(left, (x, y), right)


def arrow(x0, y0, x1, y1, size=3):
    return poly((x0, y0), (x1, y1)) + " " + head(x1, y1, math.degrees(math.atan2(y1 - y0, x1 - x0)), size)


def turning(cx, cy, r, start, end, size=3, ry=None):
    """An arc that ends in an arrow's head."""
    ry = r if ry is None else ry
    tip = on_ellipse(cx, cy, r, ry, end)
    step = 14 if end > start else -14
    before = on_ellipse(cx, cy, r, ry, end - step)
    angle = math.degrees(math.atan2(tip[1] - before[1], tip[0] - before[0]))
    return arc(cx, cy, r, start, end, ry) + " " + head(*tip, angle, size)


# Marks that say what happens to the thing that is drawn beside them.

def plus(cx, cy, s=3):
    return f"M{at(cx - s, cy)} H{n(cx + s)} M{at(cx, cy - s)} V{n(cy + s)}"


def minus(cx, cy, s=3):
    return f"M{at(cx - s, cy)} H{n(cx + s)}"


def cross(cx, cy, s=2.5):
    return f"M{at(cx - s, cy - s)} L{at(cx + s, cy + s)} M{at(cx + s, cy - s)} L{at(cx - s, cy + s)}"


def check(cx, cy, s=3):
    return poly((cx - s, cy), (cx - s * 0.25, cy + s * 0.75), (cx + s, cy - s * 0.75))


def play(cx, cy, s=3.5):
    return area((cx - s * 0.7, cy - s), (cx + s, cy), (cx - s * 0.7, cy + s))


def slash():
    return "M4 20.5 L20.5 4"


def star(cx, cy, outer, inner, points=4):
    corners = []
    for i in range(points * 2):
        radius = inner if i % 2 else outer
        corners.append(on_ellipse(cx, cy, radius, radius, -90 + i * 180 / points))
    return area(*corners)


# Things.

class Cube:
    """A cube seen from its corner; `r` is the distance from its centre to each outer corner."""

    def __init__(self, cx=12, cy=12, r=9):
        w, h = r * math.sqrt(3) / 2, r / 2
        self.centre = (cx, cy)
        self.top, self.bottom = (cx, cy - r), (cx, cy + r)
        self.left_up, self.left_down = (cx - w, cy - h), (cx - w, cy + h)
        self.right_up, self.right_down = (cx + w, cy - h), (cx + w, cy + h)

    def outline(self):
        return area(self.top, self.right_up, self.right_down, self.bottom, self.left_down, self.left_up)

    def inner(self):
        return f"{poly(self.left_up, self.centre, self.right_up)} {poly(self.centre, self.bottom)}"

    def hidden(self):
        return f"{poly(self.left_down, self.centre, self.right_down)} {poly(self.centre, self.top)}"

    def edges(self):
        return self.outline() + " " + self.inner()

    def top_face(self):
        return area(self.top, self.right_up, self.centre, self.left_up)

    def left_face(self):
        return area(self.left_up, self.centre, self.bottom, self.left_down)

    def right_face(self):
        return area(self.centre, self.right_up, self.right_down, self.bottom)


class Block:
    """A cube whose far corner is seen apart from the near one, so that hidden edges do not fall on visible ones."""

    def __init__(self, x=3.5, y=8, side=12.5, dx=5, dy=-4.5):
        self.front = [(x, y), (x + side, y), (x + side, y + side), (x, y + side)]
        self.back = [(px + dx, py + dy) for px, py in self.front]

    def visible(self):
        f, b = self.front, self.back
        return " ".join((area(*f), poly(f[0], b[0], b[1], b[2], f[2]), poly(f[1], b[1])))

    def hidden(self):
        f, b = self.front, self.back
        return f"{poly(b[0], b[3], b[2])} {poly(b[3], f[3])}"

    def front_face(self):
        return area(*self.front)

    def top_face(self):
        return area(self.front[0], self.back[0], self.back[1], self.front[1])

    def side_face(self):
        return area(self.front[1], self.back[1], self.back[2], self.front[2])


def page(x=5, y=3, w=14, h=18, fold=5):
    return (f"M{at(x + w - fold, y)} H{n(x + 1)} A1 1 0 0 0 {at(x, y + 1)} V{n(y + h - 1)} A1 1 0 0 0 {at(x + 1, y + h)}"
            f" H{n(x + w - 1)} A1 1 0 0 0 {at(x + w, y + h - 1)} V{n(y + fold)}Z {fold_of(x, y, w, fold)}")


def fold_of(x, y, w, fold):
    return f"M{at(x + w - fold, y)} V{n(y + fold)} H{n(x + w)}"


def open_page(x=4, y=3, w=13, h=18, fold=5, stop_x=11, stop_y=12.5):
    """A page whose lower right corner is left free for a mark."""
    return (f"M{n(stop_x)} {n(y + h)} H{n(x + 1)} A1 1 0 0 1 {at(x, y + h - 1)} V{n(y + 1)} A1 1 0 0 1 {at(x + 1, y)}"
            f" H{n(x + w - fold)} L{at(x + w, y + fold)} V{n(stop_y)} {fold_of(x, y, w, fold)}")


def cloud(x=2.5, y=4, s=1.0, gap=None):
    """A cloud 19 wide and 14 high; `gap`, two positions along its foot, leaves the foot open between them."""
    def p(px, py):
        return at(x + px * s, y + py * s)

    def r(radius):
        return f"A{n(radius * s)} {n(radius * s)} 0 0 1 "
    crown = f"{r(4.2)}{p(4, 5.7)} {r(5.7)}{p(15, 5.4)} {r(4.3)}{p(14.7, 14)}"
    if gap is None:
        return f"M{p(4.2, 14)} {crown}Z"
    return f"M{p(gap[0], 14)} L{p(4.2, 14)} {crown} L{p(gap[1], 14)}"


def pointer(x, y, s=1.0):
    """The arrow of a mouse with its tip at (x, y), 12 high at scale 1."""
    outline = ((0, 0), (8.6, 6.4), (4.7, 7), (7, 11.4), (5.2, 12.3), (3, 7.9), (0, 10.6))
    return area(*((x + px * s, y + py * s) for px, py in outline))


def person(cx, cy, s=1.0):
    return (f"{circle(cx, cy, 2.6 * s)} M{at(cx - 4.6 * s, cy + 9 * s)} "
            f"A{n(4.6 * s)} {n(5 * s)} 0 0 1 {at(cx + 4.6 * s, cy + 9 * s)}")


def bubble(x=3, y=4, w=18, h=13):
    return (f"M{at(x + 1.5, y)} H{n(x + w - 1.5)} A1.5 1.5 0 0 1 {at(x + w, y + 1.5)} V{n(y + h - 1.5)}"
            f" A1.5 1.5 0 0 1 {at(x + w - 1.5, y + h)} H{n(x + 9)} L{at(x + 4.5, y + h + 4)} V{n(y + h)}"
            f" H{n(x + 1.5)} A1.5 1.5 0 0 1 {at(x, y + h - 1.5)} V{n(y + 1.5)} A1.5 1.5 0 0 1 {at(x + 1.5, y)}Z")


def eye(cx, cy, w, h):
    return (f"M{at(cx - w, cy)} Q{at(cx, cy - 2 * h)} {at(cx + w, cy)} Q{at(cx, cy + 2 * h)} {at(cx - w, cy)}Z")


def window(x=3, y=4, w=18, h=16):
    return f"{rect(x, y, w, h, 1.5)} M{at(x, y + 4)} H{n(x + w)}"


def gear(cx, cy, r, teeth=6):
    spokes = []
    for i in range(teeth):
        a = i * 360 / teeth
        spokes.append(poly(on_ellipse(cx, cy, r, r, a), on_ellipse(cx, cy, r + 1.4, r + 1.4, a)))
    return circle(cx, cy, r) + " " + " ".join(spokes)
