"""The commands that build solids, in the design add-in."""

from pen import Block, arc, arrow, circle, ellipse, picture, rect

HOME = "UI/Design"

box = Block()
picture("Box", home=HOME).tint(box.top_face()).line(box.visible()).accent(rect(3.5, 8, 12.5, 12.5, 0))
picture("Cylinder", home=HOME).tint(ellipse(12, 6, 7.5, 3)) \
    .line("M4.5 6 V18", "M19.5 6 V18", arc(12, 18, 7.5, 180, 0, ry=3)).accent(ellipse(12, 6, 7.5, 3))
picture("Sphere", home=HOME).tint(circle(12, 12, 9)).line(circle(12, 12, 9)) \
    .accent(arc(12, 12, 9, 180, 0, ry=3.2))
picture("Import", home=HOME).line("M11 3.5 H5 A1 1 0 0 0 4 4.5 V19.5 A1 1 0 0 0 5 20.5 H19 A1 1 0 0 0 20 19.5 V12") \
    .accent(arrow(20.5, 3.5, 11.5, 12.5, 4.5))
