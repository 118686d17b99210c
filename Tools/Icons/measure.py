"""Measuring and picking."""

from pen import (Cube, arc, area, arrow, circle, head, picture, pointer, poly, rect, turning)


def span(x0, y0, x1, y1, size=2.6):
    """A dimension's line with a head at both ends."""
    middle = ((x0 + x1) / 2, (y0 + y1) / 2)
    return arrow(*middle, x1, y1, size) + " " + arrow(*middle, x0, y0, size)


ruler = area((2.6, 15.6), (15.6, 2.6), (21.4, 8.4), (8.4, 21.4))
ticks = " ".join(poly((6.2 + 3.1 * i, 12 - 3.1 * i), (6.2 + 3.1 * i + d, 12 - 3.1 * i + d))
                 for i, d in ((0, 2), (1, 3), (2, 2)))
picture("Measure/Measure").tint(ruler).line(ruler).accent(ticks)
picture("Measure/Angle").line("M4 19.5 L17.5 4 M4 19.5 H21").accent(arc(4, 19.5, 11.5, -48, -4))
picture("Measure/Area").tint(rect(4, 4, 16, 16, 0)).line(rect(4, 4, 16, 16, 1)) \
    .accent(poly((7, 13), (13, 7)), poly((7, 17.5), (17.5, 7)), poly((11.5, 17.5), (17.5, 11.5)))
picture("Measure/Volume").tint(Cube().left_face(), opacity=0.5).tint(Cube().right_face(), opacity=0.3) \
    .tint(Cube().top_face(), opacity=0.15) \
    .line(Cube().outline()).accent(Cube().inner())
picture("Measure/Distance").line("M3.5 5 V19 M20.5 5 V19").accent(span(5.6, 12, 18.4, 12, 3.2))
picture("Measure/Length").line("M4 14.5 C8 7 16 21 20 9.5").solid(circle(4, 14.5, 1.9), circle(20, 9.5, 1.9)) \
    .accent("M4 3 V7 M20 3 V7 M4 5 H20 M9.3 4 V6 M14.7 4 V6")
picture("Measure/Position").line("M6 3 V18 H21", head(6, 3, -90, 3), head(21, 18, 0, 3), poly((6, 18), (2.5, 21.5))) \
    .accent_solid(circle(14.5, 9, 2.3)).accent_dashed("M14.5 11.5 V18 M12 9 H6")

target = Cube(10.6, 10.6, 8)
tip = pointer(14.4, 12.6, 0.8)
picture("Measure/SelectFace").tint(target.top_face(), opacity=0.6).line(target.edges()).accent_solid(tip)
picture("Measure/SelectBody").tint(target.outline(), opacity=0.45).accent(target.edges()).accent_solid(tip)
first, second = Cube(7.2, 7.6, 5), Cube(15.9, 7.6, 5)
picture("Measure/SelectComponent").tint(first.outline(), opacity=0.45).accent(first.edges()).line(second.edges()) \
    .line(poly((7.2, 15), (7.2, 18.5), (11.5, 18.5))).accent_solid(tip)
picture("Measure/RestartSelection").line(turning(12, 12, 9, -60, 245, 3.6)).accent_solid(pointer(9, 6.4, 0.92))
# The pointer's hot spot is at (1, 1) of 32 pixels, so its tip lies in the corner.
picture("Measure/Cursor", halo=True).accent_solid(pointer(1.2, 1.2, 0.9)) \
    .line(area((9.5, 18.3), (18.3, 9.5), (22.3, 13.5), (13.5, 22.3)),
                                                                          "M13.2 14.8 L14.6 16.2 M15.6 12.4 L17 13.8")
