"""The commands that build solids and the kinds of documents, in the design add-in."""

from pen import Block, Cube, arc, arrow, circle, ellipse, picture, poly, rect

HOME = "UI/Design"

box = Block()
picture("Box", home=HOME).tint(box.top_face()).line(box.visible()).accent(rect(3.5, 8, 12.5, 12.5, 0))
picture("Cylinder", home=HOME).tint(ellipse(12, 6, 7.5, 3)) \
    .line("M4.5 6 V18", "M19.5 6 V18", arc(12, 18, 7.5, 180, 0, ry=3)).accent(ellipse(12, 6, 7.5, 3))
picture("Sphere", home=HOME).tint(circle(12, 12, 9)).line(circle(12, 12, 9)) \
    .accent(arc(12, 12, 9, 180, 0, ry=3.2))
picture("Import", home=HOME).line("M11 3.5 H5 A1 1 0 0 0 4 4.5 V19.5 A1 1 0 0 0 5 20.5 H19 A1 1 0 0 0 20 19.5 V12") \
    .accent(arrow(20.5, 3.5, 11.5, 12.5, 4.5))

# --- the kinds of documents

design = Cube()
picture("Design", home=HOME).tint(design.top_face()).line(design.edges()).accent(design.top_face())
part = Cube(12, 14.2, 7)
picture("Simulation", home=HOME).line(part.edges()) \
    .accent(arrow(12, 1.5, 12, 7, 2.4), arrow(4.5, 3, 6.5, 8.6, 2.4), arrow(19.5, 3, 17.5, 8.6, 2.4))
picture("Documentation", home=HOME).line(rect(2.5, 4, 19, 16, 1.5)).line(poly((13, 20), (13, 15.5), (21.5, 15.5))) \
    .accent(rect(5.5, 7, 6.5, 5.5, 0)).thin("M14.5 8 H19 M14.5 11 H19 M5.5 16 H10")
